#pragma once

#include "OrbisUIFrameworkExport.h"

#include "SharedTextureSlot.h"

#include <QByteArray>
#include <QHash>
#include <QPainterPath>
#include <QRect>
#include <Singleton.h>

namespace gfx {

// Antialiased coverage of filled outlines, rasterised once into single-channel
// masks on shared atlas pages. An outline drawn again with the same shape,
// transform and pen (moved by whole pixels or not at all) finds its mask and
// uploads nothing; masks on one page bind one texture, so that neighbouring
// shapes of one colour merge into one draw. GUI thread only.
class ORBIS_UI_INTERNAL_EXPORT CoverageMaskCache
{
public:
    static constexpr int kPageSize = 1024;
    static constexpr int kMaxPages = 2;

    struct Mask
    {
        // Binds the mask's pixels and keeps them alive.
        TextureKey key;
        // Where the mask lies in the key's texture.
        TexCoordInsets insets;
    };

    static CoverageMaskCache* instance() { return Singleton<CoverageMaskCache>::instance(); }

    // The coverage of `outline` (device coordinates) over `bounds`, its aligned
    // bounding rectangle.
    Mask mask(const QPainterPath& outline, const QRect& bounds);

    int entryCount() const { return mEntries.size(); }

private:
    friend class Singleton<CoverageMaskCache>;
    CoverageMaskCache() = default;

    struct Entry
    {
        SharedTextureSlot slot;
        quint64 lastUsed = 0;
    };

    static QByteArray keyOf(const QPainterPath& outline, const QPoint& origin);
    static QImage rasterise(const QPainterPath& outline, const QRect& bounds);
    void dropLeastRecentlyUsed();

    QHash<QByteArray, Entry> mEntries;
    quint64 mUses = 0;
};

} // namespace gfx
