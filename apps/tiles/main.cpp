#include "ConfigRegistry.h"
#include "TileQuery.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);

    TileQuery query;
    if (!query.parse(app.arguments().mid(1))) {
        err << query.error() << "\n" << TileQuery::usage();
        return 2;
    }
    if (query.helpRequested()) {
        out << TileQuery::usage();
        return 0;
    }
    for (const QString& o : query.configOverrides())
        ConfigRegistry::instance().applyOverride(o);

    QRectF viewRect;
    const QVector<QPoint> tiles = query.run(&viewRect);
    out << query.format(tiles, viewRect);
    // No tiles means the view exceeded the tile limit (the log says so).
    return tiles.isEmpty() ? 1 : 0;
}
