#include "HeapMeter.h"
#include "PeerFrameClock.h"
#include "PeerOptions.h"
#include "QuickDriver.h"
#include "RingItem.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTextStream>

namespace {

// Heap bytes of a list row (a delegate instance, bound to its row) and of a plain
// item, each the mean over `count` instances created after a first one.
int measureHeap(int count, const QString& jsonPath)
{
    QQmlEngine engine;
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/TrackRow.qml")));
    if (!component.isReady()) {
        QTextStream(stderr) << component.errorString();
        return 1;
    }
    QQuickItem rows;
    const auto makeRow = [&](int row) {
        auto* item = qobject_cast<QQuickItem*>(component.createWithInitialProperties({{"row", row}}));
        item->setParent(&rows);
        item->setParentItem(&rows);
    };
    makeRow(0);
    const HeapMeter rowMeter;
    for (int i = 1; i <= count; ++i)
        makeRow(i % 200);
    const double rowBytes = rowMeter.bytesPer(count);

    QQuickItem items;
    new QQuickItem(&items);
    const HeapMeter itemMeter;
    for (int i = 0; i < count; ++i)
        new QQuickItem(&items);
    const double itemBytes = itemMeter.bytesPer(count);
    return HeapMeter::report(rowBytes, itemBytes, count, jsonPath) ? 0 : 1;
}

} // namespace

// The scroll scene in Qt Quick: a QML ListView with a delegate, drawn by the basic
// (GUI thread) render loop, frame after frame.
int main(int argc, char** argv)
{
    PeerOptions options;
    const int answered = options.parse(argc, argv, QStringLiteral("orbis-peer-quick"));
    if (answered >= 0)
        return answered;
    PeerFrameClock::runBackToBack();
    qputenv("QSG_RENDER_LOOP", "basic");
    QGuiApplication app(argc, argv);
    qmlRegisterType<RingItem>("Peer", 1, 0, "Ring");
    if (options.heapInstances() > 0)
        return measureHeap(options.heapInstances(), options.statsPath());

    PeerFrameClock clock(QStringLiteral("scroll"), options);
    QQuickView view;
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setSource(QUrl(QStringLiteral("qrc:/Scroll.qml")));
    if (view.status() != QQuickView::Ready)
        return 1;
    view.resize(1280, 720);
    QuickDriver driver(&view, &clock, options.idle(), options.screenshotPath());
    view.show();
    const int status = app.exec();
    return clock.finish(options.statsPath()) ? status : 1;
}
