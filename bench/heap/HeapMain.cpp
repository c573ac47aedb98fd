#include "HeapMeter.h"
#include "PeerOptions.h"
#include "ScrollScene.h"
#include "ScrollSceneRows.h"

#include <DisplayView.h>
#include <QApplication>
#include <QTextStream>
#include <StyleManager.h>

// Heap bytes of a row of the demo's scroll scene, made and bound by the list's
// delegate, and of a plain DisplayView: each the mean over N instances made after
// a first one (which pays for styles and fonts), as the peers measure theirs.
int main(int argc, char** argv)
{
    PeerOptions options;
    const int answered = options.parse(argc, argv, QStringLiteral("orbis-heap"));
    if (answered >= 0)
        return answered;
    if (options.heapInstances() == 0) {
        QTextStream(stderr) << "orbis-heap: --heap N is required\n";
        return 2;
    }
    const int count = options.heapInstances();
    QApplication app(argc, argv);
    StyleManager::registerOptionalStyleOverrideName(QStringLiteral("demo"));
    StyleManager::instance()->initialize();

    ScrollSceneRows model(ScrollScene::kRows);
    DisplayView rows(nullptr, "rows");
    const auto makeRow = [&](int i) {
        DisplayView* row = model.createRow(model.rowKind(i % ScrollScene::kRows), &rows);
        model.bindRow(row, i % ScrollScene::kRows);
    };
    makeRow(0);
    const HeapMeter rowMeter;
    for (int i = 1; i <= count; ++i)
        makeRow(i);
    const double rowBytes = rowMeter.bytesPer(count);

    DisplayView views(nullptr, "views");
    new DisplayView(&views, "view");
    const HeapMeter viewMeter;
    for (int i = 0; i < count; ++i)
        new DisplayView(&views, "view");
    const double viewBytes = viewMeter.bytesPer(count);
    return HeapMeter::report(rowBytes, viewBytes, count, options.statsPath()) ? 0 : 1;
}
