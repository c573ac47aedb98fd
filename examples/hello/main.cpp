// The smallest complete application: a window with a flex-laid screen holding a
// label and a button that counts taps.
//
//   hello [--frames N] [--touch script:FILE] [--screenshot PNG]
//
// Without --frames it runs until the window is closed.
#include <DisplayDevice.h>
#include <Style.h>
#include <control/Button.h>
#include <control/Label.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>
#include <QThreadPool>
#include <QTimer>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({"frames", "Frames to run, then quit (0: until closed).", "N", "0"});
    parser.addOption({"touch", "Touch driver: mouse, evdev[:PATH] or script:FILE.", "DRIVER"});
    parser.addOption({"screenshot", "Writes the last frame to this PNG.", "PATH"});
    parser.process(app);

    // The touch driver is chosen before the device opens its window.
    DisplayDevice::touchDriver = parser.value("touch");
    DisplayDevice device(800, 480);
    if (!device.hasWindow()) {
        QTextStream(stderr) << "hello needs an X display with OpenGL\n";
        return 1;
    }

    // Views are laid out by the flex properties of their styles.
    auto* screen = new DisplayView(device.views(), "screen");
    screen->setStyle(Style(QStringLiteral(
        "FlexDirection:column; JustifyContent:center; AlignItems:center; BackgroundColor:#10151c")));
    screen->resizeTo(device.width(), device.height());

    auto* label = new Label(screen, "count", QStringLiteral("Not tapped yet"),
                            QStringLiteral("Height:80; FontSize:36; Color:#e0e0e0"));
    auto* button =
        new Button(screen, "tap", QStringLiteral("Tap me"), QStringLiteral("Width:320; Height:96"));

    int taps = 0;
    QObject::connect(button, &Button::clicked, [&] {
        ++taps;
        label->setText(QStringLiteral("Tapped %1 time%2").arg(taps).arg(taps == 1 ? "" : "s"));
    });

    const int lastFrame = parser.value("frames").toInt();
    const QString screenshot = parser.value("screenshot");
    int frame = 0;
    QObject::connect(device.timer(), &QTimer::timeout, &app, [&] {
        ++frame;
        if (lastFrame > 0 && frame == lastFrame - 1 && !screenshot.isEmpty())
            device.screenshot(screenshot);
        if (lastFrame > 0 && frame >= lastFrame)
            app.quit();
    });

    device.setTitle(QStringLiteral("Hello"));
    device.setVisible(true);
    const int status = app.exec();
    QThreadPool::globalInstance()->waitForDone(); // the screenshot is written in the background
    QTextStream(stdout) << "Taps: " << taps << "\n";
    return status;
}
