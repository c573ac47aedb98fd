#include "DemoOptions.h"
#include "DemoScene.h"

#include <ConfigRegistry.h>
#include <DisplayDevice.h>
#include <QApplication>
#include <QFile>
#include <QTextStream>
#include <QThreadPool>
#include <StyleManager.h>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);

    DemoOptions options;
    if (!options.parse(app.arguments().mid(1))) {
        err << options.error() << "\n" << DemoOptions::usage();
        return 2;
    }
    if (options.helpRequested()) {
        out << DemoOptions::usage();
        return 0;
    }
    for (const QString& o : options.configOverrides()) {
        if (!ConfigRegistry::instance().applyOverride(o)) {
            err << "unknown or bad configuration override: " << o << "\n";
            return 2;
        }
    }

    StyleManager::instance()->initialize();
    DisplayDevice device(options.size().width(), options.size().height());
    if (!device.hasWindow()) {
        err << "orbis-demo needs an X display with OpenGL (try xvfb-run)\n";
        return 1;
    }
    DemoScene scene(&device);
    device.setTitle(QStringLiteral("Orbis centre display"));
    device.setVisible(true);

    // The screenshot is asked for before the last frame, which then draws the whole screen.
    int frames = 0;
    const int last = options.frames();
    if (last == 1 && !options.screenshotPath().isEmpty())
        device.screenshot(options.screenshotPath());
    QObject::connect(device.timer(), &QTimer::timeout, &app, [&]() {
        ++frames;
        if (last > 0 && frames == last - 1 && !options.screenshotPath().isEmpty())
            device.screenshot(options.screenshotPath());
        if (last > 0 && frames >= last) {
            device.timer()->stop();
            app.quit();
        }
    });
    const int status = app.exec();
    QThreadPool::globalInstance()->waitForDone();

    const QString stats = device.dumpStats() + QLatin1Char('\n');
    if (options.statsPath().isEmpty()) {
        out << stats;
    } else {
        QFile file(options.statsPath());
        if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
            err << "cannot write " << options.statsPath() << "\n";
            return 1;
        }
        file.write(stats.toUtf8());
    }
    return status;
}
