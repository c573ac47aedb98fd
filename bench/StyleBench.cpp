#include "Logger.h"
#include "Style.h"
#include "StyleData.h"
#include "StyleManager.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

// Style lookups against a bare QHash lookup of the same normalized text (what a
// cached lookup cannot beat), first parses, and a full style-file load against
// reading the same entries straight from QSettings.

namespace {

class SilentSink : public LogSink
{
public:
    void write(const LogRecord&) override {}
};

// A fresh registry holding `others` unrelated styles in use besides whatever the
// benchmark adds, so the hash has a realistic size.
void freshRegistry(int others)
{
    static QList<Style> inUse;
    inUse.clear();
    Singleton<StyleManager>::reset();
    for (int i = 0; i < others; ++i)
        inUse << Style(QStringLiteral("Width:%1;Height:%2").arg(i).arg(i % 7));
}

const QString kWrittenSpec =
    QStringLiteral("Alignment:center; FontSize:20; Font:bold; Color:foregroundColor; HorizontalPadding:12");

} // namespace

static void BM_QHashLookupBaseline(benchmark::State& state)
{
    QHash<QString, TExplicitlySharedDataPointer<Style::StyleData>> hash;
    freshRegistry(0);
    for (int i = 0; i < 1000; ++i)
        hash.insert(QStringLiteral("Width:%1;Height:%2").arg(i).arg(i % 7), {});
    const QString normalized = Style::normalizedSpec(kWrittenSpec);
    hash.insert(normalized, TExplicitlySharedDataPointer<Style::StyleData>(Style(normalized).data()));
    for (auto _ : state) {
        TExplicitlySharedDataPointer<Style::StyleData> found = hash.value(normalized);
        benchmark::DoNotOptimize(found.data());
    }
}
BENCHMARK(BM_QHashLookupBaseline);

// The text as code writes it (blanks after the separators) and normalized.
static void BM_StyleCachedLookup(benchmark::State& state, bool normalized)
{
    freshRegistry(1000);
    const QString styleText = normalized ? Style::normalizedSpec(kWrittenSpec) : kWrittenSpec;
    const Style warm(styleText);
    for (auto _ : state) {
        Style style(styleText);
        benchmark::DoNotOptimize(style.data());
    }
}
BENCHMARK_CAPTURE(BM_StyleCachedLookup, written, false);
BENCHMARK_CAPTURE(BM_StyleCachedLookup, normalized, true);

static void BM_StyleFirstParse(benchmark::State& state)
{
    const int batch = 1000;
    QStringList specs;
    for (int i = 0; i < batch; ++i) {
        specs << QStringLiteral("Width:%1; Height:48; Color:foregroundColor; Alignment:left|vcenter; "
                                "InnerPadding:4,8; Font:medium; FontSize:%2")
                     .arg(i)
                     .arg(i % 40);
    }
    for (auto _ : state) {
        state.PauseTiming();
        freshRegistry(0);
        state.ResumeTiming();
        for (const QString& styleText : qAsConst(specs)) {
            Style style(styleText);
            benchmark::DoNotOptimize(style.data());
        }
    }
    state.SetItemsProcessed(state.iterations() * batch);
}
BENCHMARK(BM_StyleFirstParse)->Unit(benchmark::kMicrosecond);

namespace {

// 2,000 named styles, each building on another one (trees of depth 11), and
// 10,000 style strings that use them.
struct GeneratedStyleFile
{
    static constexpr int kNamed = 2000;
    static constexpr int kSpecs = 10000;

    GeneratedStyleFile()
    {
        QByteArray text;
        for (int i = 0; i < kNamed; ++i) {
            text += "N" + QByteArray::number(i) + "=\"";
            if (i > 0)
                text += "N" + QByteArray::number(i / 2) + "; ";
            text += "Width:" + QByteArray::number(i) + "; Color:c" + QByteArray::number(i % 13) +
                    "; Alignment:left|vcenter; InnerPadding:4," + QByteArray::number(i % 9) + "\"\n";
        }
        write("styles.conf", text);
        for (const char* empty : {"styles-common.conf", "assets-common.conf", "assets.conf"})
            write(empty, "");
    }

    void write(const char* name, const QByteArray& content) const
    {
        QFile file(dir.filePath(QString::fromLatin1(name)));
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
    }

    QString path() const { return dir.filePath(QStringLiteral("styles.conf")); }

    QTemporaryDir dir;
};

} // namespace

static void BM_QSettingsReadBaseline(benchmark::State& state)
{
    GeneratedStyleFile file;
    for (auto _ : state) {
        QSettings settings(file.path(), QSettings::IniFormat);
        for (const QString& key : settings.allKeys())
            benchmark::DoNotOptimize(settings.value(key));
    }
}
BENCHMARK(BM_QSettingsReadBaseline)->Unit(benchmark::kMillisecond);

static void BM_LoadConfiguration(benchmark::State& state)
{
    SilentSink silent;
    LogSink* previous = Logger::setSink(&silent);
    GeneratedStyleFile file;
    const QByteArray previousAssets = qgetenv("ORBIS_ASSETS");
    qputenv("ORBIS_ASSETS", QFile::encodeName(file.dir.path()));
    freshRegistry(0);
    StyleManager::instance()->loadConfiguration();
    QList<Style> users;
    for (int i = 0; i < GeneratedStyleFile::kSpecs; ++i)
        users << Style(QStringLiteral("N%1; Height:%2").arg(i % GeneratedStyleFile::kNamed).arg(i));
    for (auto _ : state)
        StyleManager::instance()->loadConfiguration();
    state.counters["styles"] = StyleManager::instance()->styleCount();
    users.clear();
    Singleton<StyleManager>::reset();
    qputenv("ORBIS_ASSETS", previousAssets);
    Logger::setSink(previous);
}
BENCHMARK(BM_LoadConfiguration)->Unit(benchmark::kMillisecond);
