#include "CoverageMaskCache.h"

#include "SharedTextureManager.h"
#include "TextureCache.h"

#include <QDataStream>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace gfx {

namespace {
// Outlines that agree to a thousandth of a pixel have the same coverage.
constexpr double kKeyGrid = 1024.0;
} // namespace

QByteArray CoverageMaskCache::keyOf(const QPainterPath& outline, const QPoint& origin)
{
    QByteArray key;
    key.reserve(1 + outline.elementCount() * 9);
    QDataStream out(&key, QIODevice::WriteOnly);
    out << quint8(outline.fillRule());
    for (int i = 0; i < outline.elementCount(); ++i) {
        const QPainterPath::Element& e = outline.elementAt(i);
        out << quint8(e.type) << qint32(std::lround((e.x - origin.x()) * kKeyGrid))
            << qint32(std::lround((e.y - origin.y()) * kKeyGrid));
    }
    return key;
}

QImage CoverageMaskCache::rasterise(const QPainterPath& outline, const QRect& bounds)
{
    QImage coverage(bounds.size(), QImage::Format_Alpha8);
    coverage.fill(0);
    QPainter painter(&coverage);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-bounds.topLeft());
    painter.fillPath(outline, Qt::black);
    return coverage;
}

CoverageMaskCache::Mask CoverageMaskCache::mask(const QPainterPath& outline, const QRect& bounds)
{
    const QByteArray key = keyOf(outline, bounds.topLeft());
    auto it = mEntries.find(key);
    if (it != mEntries.end()) {
        it->lastUsed = ++mUses;
        return {it->slot.key(), it->slot.insets()};
    }
    SharedTextureManager* shared = SharedTextureManager::instance();
    const int pool =
        shared->pool(QStringLiteral("coverage masks"), GL_ALPHA, QSize(kPageSize, kPageSize), kMaxPages);
    const QImage coverage = rasterise(outline, bounds);
    SharedTextureSlot slot = pool >= 0 ? shared->allocate(pool, bounds.size()) : SharedTextureSlot();
    if (slot.isNull() || !shared->upload(slot, coverage)) {
        // The pages are full (their freed places return at the end of the frame)
        // or the mask is larger than a page: this one goes up on its own.
        if (slot.isNull() && !mEntries.isEmpty())
            dropLeastRecentlyUsed();
        return {TextureCache::instance()->addOrLookup(coverage), TexCoordInsets()};
    }
    mEntries.insert(key, {slot, ++mUses});
    return {slot.key(), slot.insets()};
}

void CoverageMaskCache::dropLeastRecentlyUsed()
{
    // A quarter at a time, oldest first: the room comes back together.
    QVector<quint64> uses;
    uses.reserve(mEntries.size());
    for (const Entry& e : qAsConst(mEntries))
        uses << e.lastUsed;
    const int cut = qMax(1, uses.size() / 4);
    std::nth_element(uses.begin(), uses.begin() + (cut - 1), uses.end());
    const quint64 newestDropped = uses[cut - 1];
    for (auto it = mEntries.begin(); it != mEntries.end();) {
        if (it->lastUsed <= newestDropped)
            it = mEntries.erase(it);
        else
            ++it;
    }
}

} // namespace gfx
