#include "MapTileRenderer.h"

#include "native/tiles/TileLoader.h"

#include <ConfigValue.h>
#include <GLFunctions.h>
#include <GLStateManager.h>
#include <QPainter>
#include <RenderState.h>
#include <ShaderCache.h>
#include <ShaderProgram.h>
#include <TextureCache.h>
#include <algorithm>

using NativeMaps::TileId;

ConfigIntValue MapMaxTiles("maps/max_tiles", 400);
ConfigIntValue MapTileTextures("maps/tile_textures", 128);
ConfigIntValue MapTileUploadsPerFrame("maps/tile_uploads_per_frame", 12);
ConfigIntValue MapFallbackLevels("maps/fallback_levels", 6);
ConfigIntValue MapCoarseLevels("maps/coarse_levels", 3);

namespace {
// Position (x, y) and texture coordinate (s, t) per vertex, two triangles per quad.
constexpr int kFloatsPerVertex = 4;
constexpr int kVerticesPerQuad = 6;
} // namespace

MapTileRenderer::MapTileRenderer(NativeMaps::TileLoader* loader) : mLoader(loader) {}

MapTileRenderer::~MapTileRenderer() = default;

const MapTileRenderer::Texture* MapTileRenderer::texture(const TileId& tile, bool mayUpload)
{
    auto it = mTextures.find(tile);
    if (it != mTextures.end()) {
        it->lastUse = mFrame;
        return &*it;
    }
    if (!mayUpload || mUploadBudget <= 0 || !mLoader)
        return nullptr;
    const QImage image = mLoader->tile(tile);
    if (image.isNull())
        return nullptr;
    --mUploadBudget;
    ++mStats.uploads;
    // The key shares the image's pixels; the upload happens at the first bind.
    it = mTextures.insert(tile, Texture{gfx::TextureCache::instance()->addOrLookup(image), image, mFrame});
    return &*it;
}

void MapTileRenderer::prepare(const NativeMaps::MapTransform& transform)
{
    ++mFrame;
    mStats = FrameStats();
    mQuads.clear();
    mUploadBudget = qMax(1, MapTileUploadsPerFrame.value());

    const QPointF centre = transform.projection().transform.map(transform.referenceViewPoint());
    QRectF viewRect;
    const QVector<QPoint> points =
        transform.tilePoints(qMax(1, MapMaxTiles.value()), centre, QRegion(), viewRect);

    // The few tiles some levels up that cover the view come first: they arrive
    // quickly and stand in for whatever the view pans or zooms into next.
    const int zoom = transform.zoomLevel();
    const int coarseLevels = qMax(0, MapCoarseLevels.value());
    QVector<TileId> coarse, exact;
    exact.reserve(points.size());
    for (const QPoint& p : points) {
        const TileId tile = TileId(zoom, p.x(), p.y()).wrapped();
        if (!tile.isValid())
            continue;
        exact.append(tile);
        const TileId ancestor = tile.ancestor(qMin(coarseLevels, zoom));
        if (coarseLevels > 0 && ancestor != tile && !coarse.contains(ancestor))
            coarse.append(ancestor);
    }
    if (mLoader)
        mLoader->setWanted(coarse + exact);

    const QSizeF tileSize(transform.tileSize());
    const int fallbackLevels = qMax(0, MapFallbackLevels.value());
    for (const QPoint& p : points) {
        const TileId tile = TileId(zoom, p.x(), p.y()).wrapped();
        if (!tile.isValid())
            continue;
        ++mStats.visible;
        const QRectF world(transform.relativeWorldPixelsFromTile(p), tileSize);
        if (const Texture* own = texture(tile, true)) {
            ++mStats.exact;
            mQuads.append(Quad{own->key, own->image, world, QRectF(0, 0, 1, 1)});
            continue;
        }
        const Texture* found = nullptr;
        int levels = 1;
        for (; levels <= fallbackLevels && !found; ++levels)
            found = texture(tile.ancestor(levels), true);
        if (!found) {
            ++mStats.holes;
            continue;
        }
        --levels;
        ++mStats.fallback;
        const double part = 1.0 / double(1 << levels);
        const TileId ancestor = tile.ancestor(levels);
        const QRectF sub(double(tile.x - (ancestor.x << levels)) * part,
                         double(tile.y - (ancestor.y << levels)) * part, part, part);
        mQuads.append(Quad{found->key, found->image, world, sub});
    }
    // Quads that share a texture (the children of one fallback tile) go together.
    std::stable_sort(mQuads.begin(), mQuads.end(),
                     [](const Quad& a, const Quad& b) { return a.key.data() < b.key.data(); });

    mVertices.resize(mQuads.size() * kVerticesPerQuad * kFloatsPerVertex);
    float* v = mVertices.data();
    for (const Quad& q : qAsConst(mQuads)) {
        const float x0 = float(q.world.left()), y0 = float(q.world.top());
        const float x1 = float(q.world.right()), y1 = float(q.world.bottom());
        const float s0 = float(q.texture.left()), t0 = float(q.texture.top());
        const float s1 = float(q.texture.right()), t1 = float(q.texture.bottom());
        const float corners[kVerticesPerQuad][kFloatsPerVertex] = {
            {x0, y0, s0, t0}, {x1, y0, s1, t0}, {x0, y1, s0, t1},
            {x1, y0, s1, t0}, {x1, y1, s1, t1}, {x0, y1, s0, t1},
        };
        for (const auto& corner : corners)
            for (float f : corner)
                *v++ = f;
    }

    // Relative world pixels to projected view pixels: rotate and scale, place the
    // reference, tilt.
    mViewTransform =
        transform.worldToView() *
        QTransform::fromTranslate(transform.referenceViewPoint().x(), transform.referenceViewPoint().y()) *
        transform.projection().transform;
    mViewMatrix = QMatrix4x4(mViewTransform);
    trimTextures();
}

void MapTileRenderer::trimTextures()
{
    const int capacity = qMax(MapTileTextures.value(), mStats.visible);
    if (mTextures.size() <= capacity)
        return;
    QVector<QPair<quint64, TileId>> byAge;
    byAge.reserve(mTextures.size());
    for (auto it = mTextures.cbegin(); it != mTextures.cend(); ++it)
        if (it->lastUse != mFrame)
            byAge.append({it->lastUse, it.key()});
    std::sort(
        byAge.begin(), byAge.end(),
        [](const QPair<quint64, TileId>& a, const QPair<quint64, TileId>& b) { return a.first < b.first; });
    for (int i = 0; i < byAge.size() && mTextures.size() > capacity; ++i)
        mTextures.remove(byAge[i].second);
}

void MapTileRenderer::releaseTextures()
{
    mTextures.clear();
    mQuads.clear();
    mVertices.clear();
}

void MapTileRenderer::render(const gfx::RenderState& state, const QRect& target, const QRect& source)
{
    gfx::GLFunctions* f = gfx::GLFunctions::current();
    gfx::GLStateManager* gl = gfx::GLStateManager::instance();
    const bool opaque = state.opacity >= 1.0f;
    if (opaque) {
        // The scissor box is the item's bounds: clearing paints the background under
        // the tiles without a draw.
        gl->glClearColor(float(mBackground.redF()), float(mBackground.greenF()), float(mBackground.blueF()),
                         1.0f);
        f->glClear(GL_COLOR_BUFFER_BIT);
    }
    mStats.binds = 0;
    if (mQuads.isEmpty())
        return;
    gfx::ShaderProgram* program = gfx::ShaderCache::instance()->program(gfx::ShaderCache::kTexture);
    if (!program || !program->isValid())
        return;
    QMatrix4x4 matrix = state.projection() * state.matrix;
    matrix.translate(float(target.x() - source.x()), float(target.y() - source.y()));
    matrix *= mViewMatrix;

    gl->glUseProgram(program->id());
    program->setUniform("uMatrix", matrix);
    program->setUniform("uOpacity", state.opacity);
    program->setUniform("uTexture", 0);
    gl->glActiveTexture(GL_TEXTURE0);
    if (opaque) {
        gl->glDisable(GL_BLEND);
    } else {
        gl->glEnable(GL_BLEND);
        gl->glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    }
    gl->glBindBufferArray(0);
    const GLsizei stride = kFloatsPerVertex * sizeof(float);
    gl->glEnableVertexAttribArray(0);
    gl->glEnableVertexAttribArray(1);
    gl->glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, stride, mVertices.constData());
    gl->glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, stride, mVertices.constData() + 2);

    gfx::TextureCache* cache = gfx::TextureCache::instance();
    for (int first = 0; first < mQuads.size();) {
        int last = first + 1;
        while (last < mQuads.size() && mQuads[last].key.data() == mQuads[first].key.data())
            ++last;
        if (cache->bind(mQuads[first].key)) {
            f->glDrawArrays(GL_TRIANGLES, first * kVerticesPerQuad, (last - first) * kVerticesPerQuad);
            ++mStats.binds;
        }
        first = last;
    }
}

void MapTileRenderer::paint(QPainter& painter, const QRect& target)
{
    painter.save();
    painter.setClipRect(target, Qt::IntersectClip);
    painter.fillRect(target, mBackground);
    painter.setTransform(mViewTransform * QTransform::fromTranslate(target.x(), target.y()), true);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const Quad& q : qAsConst(mQuads)) {
        const QSizeF size = q.image.size();
        const QRectF source(q.texture.x() * size.width(), q.texture.y() * size.height(),
                            q.texture.width() * size.width(), q.texture.height() * size.height());
        painter.drawImage(q.world, q.image, source);
    }
    painter.restore();
}
