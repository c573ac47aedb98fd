#pragma once

#include "TileSource.h"

#include <ConfigValue.h>
#include <QHash>
#include <QList>
#include <QStringList>
#include <QTimer>

class QNetworkAccessManager;
class QNetworkReply;

namespace NativeMaps {

extern ConfigStringValue TileUrlTemplate;

// Tiles from a tile server. The URL template names the tile with {z}, {x} and {y}
// and, when the server spreads its load over several host names, {s}, which takes
// one of the subdomains (always the same one for a tile, so that caches on the way
// keep working). At most maxRequests() are in flight; the rest wait in the order
// they were asked for. Server errors (5xx), timeouts and lost connections are
// retried after a growing pause; a missing tile (404) or any other answer is not.
// Time is read from the framework clock: poll() (run by a timer while anything is
// pending) starts retries that are due and gives up on requests that took too long.
class HttpTileSource : public TileSource
{
    Q_OBJECT

public:
    // An empty template takes "maps/tile_url".
    explicit HttpTileSource(const QString& urlTemplate = QString(), QObject* parent = nullptr);
    ~HttpTileSource() override;

    QString name() const override { return QStringLiteral("http"); }
    void request(const TileId& tile) override;
    void cancel(const TileId& tile) override;

    void setSubdomains(const QStringList& subdomains) { mSubdomains = subdomains; }
    const QString& urlTemplate() const { return mTemplate; }
    QString urlFor(const TileId& tile) const;

    int maxRequests() const { return mMaxRequests; }
    void setMaxRequests(int count);
    int activeRequests() const { return mActive.size(); }
    int pendingRequests() const { return mQueue.size() + mRetries.size() + mActive.size(); }

    void poll();

private slots:
    void replyFinished();

private:
    struct Active
    {
        QNetworkReply* reply = nullptr;
        int attempt = 1;
        qint64 startedMs = 0;
        bool timedOut = false;
    };
    struct Retry
    {
        int attempt = 1;
        qint64 dueMs = 0;
    };

    bool isPending(const TileId& tile) const;
    void start(const TileId& tile, int attempt);
    void pump();
    // Schedules another attempt, or reports the failure once attempts are used up.
    void retryOrFail(const TileId& tile, int attempt, const QString& error);
    void fail(const TileId& tile, const QString& error);
    void updatePulse();
    static qint64 nowMs();

    QNetworkAccessManager* mNetwork;
    QString mTemplate;
    QStringList mSubdomains;
    QByteArray mUserAgent;
    int mMaxRequests;
    QList<TileId> mQueue;
    QHash<TileId, Active> mActive;
    QHash<TileId, Retry> mRetries;
    QHash<QNetworkReply*, TileId> mReplies;
    QTimer mPulse;
    bool mWarnedNoUrl = false;
};

} // namespace NativeMaps
