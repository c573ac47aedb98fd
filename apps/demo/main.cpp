#include "DemoOptions.h"
#include "DemoRunner.h"

#include <ConfigRegistry.h>
#include <QApplication>
#include <QSet>
#include <QTextStream>
#include <input/touch/TouchScript.h>

// Everything the command line can get wrong is answered before Qt connects to a
// display, so --help and mistakes work anywhere.
int main(int argc, char** argv)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    DemoOptions options;
    if (!options.parse(arguments)) {
        err << "orbis-demo: " << options.error() << "\n" << DemoOptions::usage();
        return 2;
    }
    if (options.helpRequested()) {
        out << DemoOptions::usage();
        return 0;
    }
    TouchScript script;
    if (!options.scriptPath().isEmpty() && !script.load(options.scriptPath())) {
        err << "orbis-demo: " << options.scriptPath() << ": " << script.error() << "\n"
            << DemoOptions::usage();
        return 2;
    }
    // Two maps keep up to 128 tiles of 256 KB each on the GPU, besides their layers
    // and the rest of the screen: more than the default texture budget. --set may
    // still change it.
    ConfigRegistry::instance().applyOverride(QStringLiteral("gfx/texture_cache_size_mb=192"));
    QSet<QString> keys;
    for (const ConfigRegistry::Entry& entry : ConfigRegistry::instance().entries())
        keys.insert(entry.key);
    for (const QString& o : options.configOverrides()) {
        const QString key = o.left(o.indexOf(QLatin1Char('='))).trimmed();
        if (!keys.contains(key)) {
            err << "orbis-demo: unknown configuration key: " << key << "\n" << DemoOptions::usage();
            return 2;
        }
        ConfigRegistry::instance().applyOverride(o);
    }
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if ((platform.isEmpty() || platform.startsWith("xcb")) && qEnvironmentVariableIsEmpty("DISPLAY")) {
        err << "orbis-demo needs an X display with OpenGL (try xvfb-run, or ./scripts/run-demo.sh)\n";
        return 1;
    }

    QApplication app(argc, argv);
    out.flush();
    DemoRunner runner(options, script);
    return runner.run();
}
