#include "PeerFrameClock.h"

#include "PeerOptions.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <algorithm>
#include <cmath>
#include <ctime>
#include <unistd.h>

// The peers link Qt alone, so that their start-up and size are theirs: they keep
// their own copy of the statistics the framework's frame recorder computes.
namespace {

// Milliseconds since the kernel started this process (10 ms resolution): the same
// origin for every contender, dynamic loading included.
double msSinceProcessStart()
{
    QFile stat(QStringLiteral("/proc/self/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray line = stat.readAll();
    // The command name may hold blanks and parentheses: fields are counted after its last ')'.
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    // Field 22 (start time in clock ticks after boot) is the 20th after the name.
    if (fields.size() < 20)
        return -1;
    const double startS = fields[19].toDouble() / double(sysconf(_SC_CLK_TCK));
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return (double(now.tv_sec) + now.tv_nsec / 1e9 - startS) * 1000.0;
}

struct Summary
{
    int frames = 0;
    double mean = 0;
    double p50 = 0;
    double p99 = 0;
    double max = 0;
};

// Nearest-rank percentiles, as the demo's recorder computes them.
Summary summarize(QVector<double> ms)
{
    Summary s;
    s.frames = ms.size();
    if (ms.isEmpty())
        return s;
    std::sort(ms.begin(), ms.end());
    const auto rank = [&](double q) {
        return ms[qBound(0, int(std::ceil(q * s.frames)) - 1, s.frames - 1)];
    };
    for (double v : ms)
        s.mean += v;
    s.mean /= s.frames;
    s.p50 = rank(0.50);
    s.p99 = rank(0.99);
    s.max = ms.last();
    return s;
}

QString row(const QString& name, const Summary& s)
{
    return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 %9 %10\n")
        .arg(name, -16)
        .arg(s.frames, 6)
        .arg(s.mean, 8, 'f', 2)
        .arg(s.p50, 8, 'f', 2)
        .arg(s.p99, 8, 'f', 2)
        .arg(s.max, 8, 'f', 2)
        .arg(QStringLiteral("-"), 7)
        .arg(QStringLiteral("-"), 8)
        .arg(QStringLiteral("-"), 11)
        .arg(QStringLiteral("-"), 11);
}

QJsonObject toJson(const Summary& s)
{
    return QJsonObject{
        {"frames", s.frames}, {"meanMs", s.mean}, {"p50Ms", s.p50}, {"p99Ms", s.p99}, {"maxMs", s.max}};
}

} // namespace

PeerFrameClock::PeerFrameClock(const QString& scene, const PeerOptions& options)
    : mScene(scene), mWarmup(options.warmup()), mTotal(options.warmup() + options.frames()),
      mIdle(options.idle())
{
    mTimer.start();
}

void PeerFrameClock::runBackToBack()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_UPDATE_IDLE_TIME"))
        qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
}

void PeerFrameClock::frameStarted()
{
    if (mOpen)
        return;
    mOpen = true;
    mStartNs = mTimer.nsecsElapsed();
}

bool PeerFrameClock::frameSwapped()
{
    if (!mOpen)
        return frames() >= mTotal;
    mOpen = false;
    mFrameMs.append((mTimer.nsecsElapsed() - mStartNs) / 1e6);
    if (mFirstSwapMs < 0)
        mFirstSwapMs = msSinceProcessStart();
    return frames() >= mTotal;
}

QVector<PeerFrameClock::Section> PeerFrameClock::sections() const
{
    const int n = frames();
    QVector<Section> list{{QStringLiteral("(first frame)"), 0, std::min(1, n)}};
    if (mWarmup > 1)
        list.append({QStringLiteral("(warm-up)"), 1, std::min(mWarmup, n)});
    list.append({mScene, std::min(std::max(mWarmup, 1), n), n});
    return list;
}

QString PeerFrameClock::report() const
{
    QString text = QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 %9 %10\n")
                       .arg(QStringLiteral("section"), -16)
                       .arg(QStringLiteral("frames"), 6)
                       .arg(QStringLiteral("mean ms"), 8)
                       .arg(QStringLiteral("p50 ms"), 8)
                       .arg(QStringLiteral("p99 ms"), 8)
                       .arg(QStringLiteral("max ms"), 8)
                       .arg(QStringLiteral("draws"), 7)
                       .arg(QStringLiteral("GL calls"), 8)
                       .arg(QStringLiteral("rendered px"), 11)
                       .arg(QStringLiteral("composed px"), 11);
    for (const Section& s : sections())
        text += row(s.name, summarize(mFrameMs.mid(s.first, s.end - s.first)));
    text += row(QStringLiteral("total"), summarize(mFrameMs));
    text += QStringLiteral("first swap %1 ms after process start\n").arg(mFirstSwapMs, 0, 'f', 1);
    return text;
}

QByteArray PeerFrameClock::json() const
{
    QJsonArray list;
    for (const Section& s : sections()) {
        const QVector<double> ms = mFrameMs.mid(s.first, s.end - s.first);
        QJsonObject object = toJson(summarize(ms));
        object.insert(QStringLiteral("section"), s.name);
        QJsonArray times;
        for (double v : ms)
            times.append(v);
        object.insert(QStringLiteral("frameMs"), times);
        list.append(object);
    }
    const QJsonObject root{{"sections", list},
                           {"total", toJson(summarize(mFrameMs))},
                           {"firstSwapMs", mFirstSwapMs},
                           {"idle", mIdle}};
    return QJsonDocument(root).toJson();
}

bool PeerFrameClock::finish(const QString& statsPath) const
{
    QTextStream(stdout) << report();
    if (statsPath.isEmpty())
        return true;
    QFile file(statsPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(json()) > 0;
}
