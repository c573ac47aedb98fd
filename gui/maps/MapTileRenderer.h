#pragma once

#include "OrbisUIFrameworkExport.h"
#include "native/MapTransform.h"
#include "native/tiles/TileId.h"

#include <ICustomRenderer.h>
#include <QColor>
#include <QHash>
#include <QMatrix4x4>
#include <QVector>
#include <TextureKey.h>

class QPainter;

namespace NativeMaps {
class TileLoader;
}

/// Draws the map tiles of one camera as textured quads in the camera's projection.
/// prepare() (GUI thread, before the frame's display list is drawn) asks the loader
/// for the tiles of the view, centre first, and lays out one quad per visible tile:
/// the tile itself when it is loaded, else the part of its nearest loaded ancestor
/// that covers it, scaled, so zooming never opens holes. render() then draws the
/// quads with as few texture binds as the layout allows.
class ORBIS_UI_EXPORT MapTileRenderer : public gfx::ICustomRenderer
{
public:
    /// What the last render drew, tile by tile.
    struct FrameStats
    {
        int visible = 0;  // tiles of the view
        int exact = 0;    // drawn from their own texture
        int fallback = 0; // drawn from an ancestor's
        int holes = 0;    // nothing loaded to draw them with
        int uploads = 0;  // new textures this frame
        int binds = 0;    // texture binds (draw calls) of the last render
    };

    explicit MapTileRenderer(NativeMaps::TileLoader* loader);
    ~MapTileRenderer() override;

    void prepare(const NativeMaps::MapTransform& transform);
    void render(const gfx::RenderState& state, const QRect& target, const QRect& source) override;
    /// The same picture through a painter, one image per tile (for painters that
    /// are not the engine's, and as the reference the fast path is measured against).
    void paint(QPainter& painter, const QRect& target);

    const FrameStats& stats() const { return mStats; }
    /// Every visible tile drawn from its own texture.
    bool isComplete() const { return mStats.holes == 0 && mStats.fallback == 0; }

    /// Shown where no tile covers the view.
    void setBackground(const QColor& color) { mBackground = color; }
    const QColor& background() const { return mBackground; }

    /// Drops every texture this renderer holds (they are deleted at the frame's end).
    void releaseTextures();
    int textureCount() const { return mTextures.size(); }

private:
    struct Quad
    {
        gfx::TextureKey key;
        QImage image;
        QRectF world;   // relative world pixels at the camera's zoom level
        QRectF texture; // the part of the texture to show, 0..1
    };
    struct Texture
    {
        gfx::TextureKey key;
        QImage image;
        quint64 lastUse = 0;
    };

    /// The texture of a tile, made from the loader's image while the frame's upload
    /// budget lasts; null when neither is there.
    const Texture* texture(const NativeMaps::TileId& tile, bool mayUpload);
    void trimTextures();

    NativeMaps::TileLoader* mLoader;
    QHash<NativeMaps::TileId, Texture> mTextures;
    QVector<Quad> mQuads;
    QVector<float> mVertices;
    QMatrix4x4 mViewMatrix;
    QTransform mViewTransform;
    QColor mBackground = QColor(242, 239, 233);
    FrameStats mStats;
    quint64 mFrame = 0;
    int mUploadBudget = 0;
};
