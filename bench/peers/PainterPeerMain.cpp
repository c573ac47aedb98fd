#include "PainterWindow.h"
#include "PeerFrameClock.h"
#include "PeerOptions.h"

#include <QGuiApplication>
#include <QTextStream>

// The scroll scene drawn with QPainter on Qt's OpenGL 2 paint engine in a
// QOpenGLWindow, frame after frame.
int main(int argc, char** argv)
{
    PeerOptions options;
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const bool parsed = options.parse(arguments);
    if (!parsed || options.helpRequested() || options.heapInstances() > 0) {
        // Nothing here is an object per row: there is no heap figure to give.
        const QString why = !parsed ? options.error() + '\n'
                            : options.heapInstances() > 0
                                ? QStringLiteral("--heap: no objects per row here\n")
                                : QString();
        QTextStream(why.isEmpty() ? stdout : stderr)
            << why << PeerOptions::usage(QStringLiteral("orbis-peer-painter"));
        return why.isEmpty() ? 0 : 2;
    }
    QGuiApplication app(argc, argv);
    PeerFrameClock clock(QStringLiteral("scroll"), options);
    PainterWindow window(&clock, options.idle(), options.screenshotPath());
    window.show();
    const int status = app.exec();
    return clock.finish(options.statsPath()) ? status : 1;
}
