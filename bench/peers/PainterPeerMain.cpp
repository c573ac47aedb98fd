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
    const int answered = options.parse(argc, argv, QStringLiteral("orbis-peer-painter"));
    if (answered >= 0)
        return answered;
    if (options.heapInstances() > 0) {
        // Rows here are drawn from the model's data: no object stands for a row or a view.
        QTextStream(stderr) << "orbis-peer-painter: --heap: nothing here is an object per row or view\n";
        return 2;
    }
    PeerFrameClock::runBackToBack();
    QGuiApplication app(argc, argv);
    PeerFrameClock clock(QStringLiteral("scroll"), options);
    PainterWindow window(&clock, options.idle(), options.screenshotPath());
    window.show();
    const int status = app.exec();
    return clock.finish(options.statsPath()) ? status : 1;
}
