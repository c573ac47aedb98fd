#include "HttpTileSource.h"

#include "Clock.h"

#include <Logger.h>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

namespace NativeMaps {

ConfigStringValue TileUrlTemplate("maps/tile_url");
ConfigStringValue TileSubdomains("maps/tile_subdomains", QStringLiteral("a,b,c"));
ConfigStringValue TileUserAgent("maps/tile_user_agent",
                                QStringLiteral("OrbisUIFramework/" ORBIS_FRAMEWORK_VERSION));
ConfigIntValue TileMaxRequests("maps/tile_max_requests", 6);
ConfigIntValue TileTimeoutMs("maps/tile_timeout_ms", 10000);
ConfigIntValue TileRetries("maps/tile_retries", 3);
ConfigIntValue TileRetryDelayMs("maps/tile_retry_delay_ms", 500);

namespace {
const char* const kLogSource = "maps/native/tiles/HttpTileSource";
constexpr int kPulseMs = 50;
} // namespace

HttpTileSource::HttpTileSource(const QString& urlTemplate, QObject* parent)
    : TileSource(parent), mNetwork(new QNetworkAccessManager(this)),
      mTemplate(urlTemplate.isEmpty() ? TileUrlTemplate.value() : urlTemplate),
      mSubdomains(TileSubdomains.value().split(QLatin1Char(','), Qt::SkipEmptyParts)),
      mUserAgent(TileUserAgent.value().toUtf8()), mMaxRequests(qMax(1, TileMaxRequests.value()))
{
    mPulse.setInterval(kPulseMs);
    connect(&mPulse, &QTimer::timeout, this, &HttpTileSource::poll);
}

HttpTileSource::~HttpTileSource()
{
    for (auto it = mActive.begin(); it != mActive.end(); ++it) {
        it->reply->disconnect(this);
        it->reply->abort();
    }
}

qint64 HttpTileSource::nowMs()
{
    return Clock::current()->nowMilliseconds();
}

void HttpTileSource::setMaxRequests(int count)
{
    if (!ORBIS_ASSERT(count > 0, QStringLiteral("Invalid number of tile requests: %1").arg(count)))
        return;
    mMaxRequests = count;
    pump();
}

QString HttpTileSource::urlFor(const TileId& tile) const
{
    QString url = mTemplate;
    url.replace(QLatin1String("{z}"), QString::number(tile.zoom));
    url.replace(QLatin1String("{x}"), QString::number(tile.x));
    url.replace(QLatin1String("{y}"), QString::number(tile.y));
    if (!mSubdomains.isEmpty())
        url.replace(QLatin1String("{s}"),
                    mSubdomains.at(int(uint(tile.x + tile.y) % uint(mSubdomains.size()))));
    return url;
}

bool HttpTileSource::isPending(const TileId& tile) const
{
    return mActive.contains(tile) || mRetries.contains(tile) || mQueue.contains(tile);
}

void HttpTileSource::request(const TileId& tile)
{
    if (!ORBIS_ASSERT(tile.isValid(), QStringLiteral("Invalid tile requested: %1").arg(tile.toString())))
        return;
    if (mTemplate.isEmpty()) {
        if (!mWarnedNoUrl)
            Logger::warn(QStringLiteral("No tile server configured (maps/tile_url)"));
        mWarnedNoUrl = true;
        QMetaObject::invokeMethod(
            this, [this, tile] { emit tileFailed(this, tile, QStringLiteral("No tile server")); },
            Qt::QueuedConnection);
        return;
    }
    if (isPending(tile))
        return;
    mQueue.append(tile);
    pump();
}

void HttpTileSource::cancel(const TileId& tile)
{
    mQueue.removeAll(tile);
    mRetries.remove(tile);
    auto it = mActive.find(tile);
    if (it != mActive.end()) {
        QNetworkReply* reply = it->reply;
        mActive.erase(it);
        mReplies.remove(reply);
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
    pump();
}

void HttpTileSource::start(const TileId& tile, int attempt)
{
    QNetworkRequest request{QUrl(urlFor(tile))};
    request.setHeader(QNetworkRequest::UserAgentHeader, mUserAgent);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    QNetworkReply* reply = mNetwork->get(request);
    connect(reply, &QNetworkReply::finished, this, &HttpTileSource::replyFinished);
    mActive.insert(tile, Active{reply, attempt, nowMs(), false});
    mReplies.insert(reply, tile);
}

void HttpTileSource::pump()
{
    while (mActive.size() < mMaxRequests && !mQueue.isEmpty()) {
        const TileId tile = mQueue.takeFirst();
        const auto retry = mRetries.find(tile);
        int attempt = 1;
        if (retry != mRetries.end()) {
            attempt = retry->attempt;
            mRetries.erase(retry);
        }
        start(tile, attempt);
    }
    updatePulse();
}

void HttpTileSource::updatePulse()
{
    const bool needed = !mActive.isEmpty() || !mRetries.isEmpty();
    if (needed && !mPulse.isActive())
        mPulse.start();
    else if (!needed)
        mPulse.stop();
}

void HttpTileSource::poll()
{
    const qint64 now = nowMs();
    const qint64 timeout = TileTimeoutMs.value();
    QList<QNetworkReply*> late;
    for (auto it = mActive.begin(); it != mActive.end(); ++it) {
        if (timeout > 0 && !it->timedOut && now - it->startedMs >= timeout) {
            it->timedOut = true;
            late.append(it->reply);
        }
    }
    // Aborting finishes the reply at once, which reschedules or fails the tile.
    for (QNetworkReply* reply : late)
        reply->abort();
    // Due retries go to the front, oldest first: they were asked for before the rest.
    QList<TileId> due;
    for (auto it = mRetries.begin(); it != mRetries.end(); ++it) {
        if (it->dueMs <= now && !mQueue.contains(it.key()))
            due.append(it.key());
    }
    std::sort(due.begin(), due.end(),
              [this](const TileId& a, const TileId& b) { return mRetries[a].dueMs < mRetries[b].dueMs; });
    for (int i = due.size() - 1; i >= 0; --i)
        mQueue.prepend(due[i]);
    pump();
}

void HttpTileSource::replyFinished()
{
    auto* reply = qobject_cast<QNetworkReply*>(sender());
    if (!reply)
        return;
    reply->deleteLater();
    const auto found = mReplies.find(reply);
    if (found == mReplies.end())
        return;
    const TileId tile = found.value();
    mReplies.erase(found);
    const Active active = mActive.take(tile);
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QNetworkReply::NetworkError error = reply->error();

    if (active.timedOut) {
        retryOrFail(tile, active.attempt, QStringLiteral("Timed out"));
    } else if (error == QNetworkReply::NoError && status >= 200 && status < 300) {
        emit tileLoaded(this, tile, reply->readAll());
    } else if (status >= 500 || (status == 0 && error != QNetworkReply::NoError &&
                                 error != QNetworkReply::ContentNotFoundError)) {
        // A server in trouble or a connection that broke may do better next time.
        retryOrFail(tile, active.attempt,
                    status ? QStringLiteral("HTTP %1").arg(status) : reply->errorString());
    } else {
        fail(tile, status ? QStringLiteral("HTTP %1").arg(status) : reply->errorString());
    }
    pump();
}

void HttpTileSource::retryOrFail(const TileId& tile, int attempt, const QString& error)
{
    if (attempt > TileRetries.value()) {
        fail(tile, error);
        return;
    }
    const qint64 delay = qint64(TileRetryDelayMs.value()) << qMin(attempt - 1, 16);
    mRetries.insert(tile, Retry{attempt + 1, nowMs() + delay});
}

void HttpTileSource::fail(const TileId& tile, const QString& error)
{
    emit tileFailed(this, tile, QStringLiteral("%1: %2").arg(urlFor(tile), error));
}

} // namespace NativeMaps
