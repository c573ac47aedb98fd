#include "Renderer.h"

#include "ColorShaderUsage.h"
#include "CommandRenderItem.h"
#include "DisplayList.h"
#include "DisplayListRenderItem.h"
#include "DisplayListSliceRenderItem.h"
#include "GLFunctions.h"
#include "GLStateManager.h"
#include "GeometryRenderItem.h"
#include "RenderState.h"
#include "ShaderCache.h"
#include "TextureShaderUsage.h"
#include "VertexBuffer.h"

#include <Logger.h>

namespace gfx {

namespace {
const char* const kLogSource = "graphics/Renderer";
constexpr int kMinSubstitutionArea = 4096;

bool isSkipped(const RenderItem* item)
{
    return !item || item->type == RenderItem::kSkipped;
}

bool isPlainRects(const Geometry* g)
{
    return !g->hasIndexList() && g->mode() < 2;
}

bool isSourceOver(const ShaderUsage* usage)
{
    return usage->blendSource() == GL_ONE && usage->blendDestination() == GL_ONE_MINUS_SRC_ALPHA;
}

// Whether the usage replaces every pixel of its geometry: it does not blend, and
// its shader cannot leave a pixel out.
bool hidesBeneath(const ShaderUsage* usage)
{
    return !usage->needsBlending() && !ShaderCache::instance()->discards(usage->customShader());
}

// The whole pixels that a chain of rectangles fills.
QRegion filledRegion(const Geometry* head)
{
    QRegion region;
    for (const Geometry* g = head; g; g = g->next())
        region += g->region();
    return region;
}

// The first item below `index` that overlaps it decides: a solid, opaque fill
// under the whole item is folded into its shader, which then composites the
// texture over the fill's colour exactly as blending would have.
void substitute(QVector<RenderItem*>& items, int index)
{
    auto* item = static_cast<GeometryRenderItem*>(items[index]);
    for (int j = index - 1; j >= 0; --j) {
        RenderItem* below = items[j];
        if (isSkipped(below) || !below->bounds.intersects(item->bounds))
            continue;
        if (below->type != RenderItem::kGeometry)
            return;
        const Geometry* fill = static_cast<GeometryRenderItem*>(below)->mGeometry;
        const auto* usage = dynamic_cast<const ColorShaderUsage*>(below->shaderUsage.get());
        if (!usage || usage->needsBlending() || !usage->customShader().isNull() || !usage->isIdentity() ||
            !isPlainRects(fill) || !QRegion(item->bounds).subtracted(filledRegion(fill)).isEmpty())
            return;
        ShaderUsage* opacified = TextureShaderUsage::opacify(item->shaderUsage.get(), usage->color());
        item->translucentUsage = std::move(item->shaderUsage);
        item->shaderUsage.reset(opacified);
        return;
    }
}

bool wantsSubstitution(const GeometryRenderItem* item)
{
    const ShaderUsage* usage = item->shaderUsage.get();
    return dynamic_cast<const TextureShaderUsage*>(usage) && usage->needsBlending() &&
           usage->opacity() >= 1.0f && usage->customShader().isNull() && isSourceOver(usage) &&
           isPlainRects(item->mGeometry) &&
           item->bounds.width() * item->bounds.height() >= kMinSubstitutionArea;
}

bool isCullable(const Geometry* head)
{
    const int mode = head->mode();
    if (mode == Geometry::kTriangles || mode == Geometry::kTriangleStrip || mode == Geometry::kLineStrip ||
        head->hasIndexList())
        return false;
    for (const Geometry* g = head; g; g = g->next())
        if (!g->hasNoArea())
            return false;
    return true;
}

void mergeUpwards(QVector<RenderItem*>& items, int index, const QVector<RenderItem*>* hidden)
{
    auto* item = static_cast<GeometryRenderItem*>(items[index]);
    for (int k = index + 1; k < items.size(); ++k) {
        RenderItem* later = items[k];
        // A hidden item still draws under an opacity below 1: moving past it would show.
        if (hidden && (*hidden)[k] && (*hidden)[k]->bounds.intersects(item->bounds))
            return;
        if (isSkipped(later))
            continue;
        if (!later->shaderUsage || !later->shaderUsage->equals(item->shaderUsage.get())) {
            // Drawing this item after an overlapping different one would change the picture.
            if (later->bounds.intersects(item->bounds))
                return;
            continue;
        }
        auto* receiver = static_cast<GeometryRenderItem*>(later);
        if (later->type == RenderItem::kGeometry && receiver->mergeCount < GeometryRenderItem::kMaxMerges &&
            receiver->merge(item))
            items[index] = nullptr;
        return;
    }
}

void setBlending(GLStateManager* gl, const ShaderUsage* usage, const RenderState& state)
{
    if (usage->needsBlending() || state.opacity < 1.0f) {
        gl->glEnable(GL_BLEND);
        gl->glBlendFunc(usage->blendSource(), usage->blendDestination());
    } else {
        gl->glDisable(GL_BLEND);
    }
}

void renderNested(const RenderState& state, DisplayListRenderItem* item, const QRect& screen,
                  const QRect& clip)
{
    if (!item->list || item->source.isEmpty())
        return;
    RenderState nested = state;
    if (!item->shaderUsage->isIdentity())
        nested.matrix *= item->shaderUsage->matrix();
    nested.matrix.translate(item->target.x(), item->target.y());
    nested.matrix.scale(float(item->target.width()) / item->source.width(),
                        float(item->target.height()) / item->source.height());
    nested.matrix.translate(-item->source.x(), -item->source.y());
    nested.viewport = screen;
    nested.clipRect = clip;
    nested.opacity = state.opacity * item->shaderUsage->opacity();
    GLFunctions* f = GLFunctions::current();
    const QRect inner = state.toWindow(screen);
    f->glViewport(inner.x(), inner.y(), inner.width(), inner.height());
    item->list->render(nested);
    const QRect outer = state.toWindow(state.viewport);
    f->glViewport(outer.x(), outer.y(), outer.width(), outer.height());
}
} // namespace

QRegion optimize(QVector<RenderItem*>& items, bool allowSubstitution, QVector<RenderItem*>* hidden)
{
    if (hidden)
        hidden->fill(nullptr, items.size());
    QRegion covered;
    for (int i = items.size() - 1; i >= 0; --i) {
        RenderItem* item = items[i];
        if (isSkipped(item))
            continue;
        if (item->type != RenderItem::kGeometry) {
            if (!item->shaderUsage || hidesBeneath(item->shaderUsage.get()))
                covered |= item->opaqueRect & item->bounds;
            continue;
        }
        auto* geometryItem = static_cast<GeometryRenderItem*>(item);
        Geometry* geometry = geometryItem->mGeometry;
        if (!geometry) {
            delete item;
            items[i] = nullptr;
            continue;
        }
        if (allowSubstitution && wantsSubstitution(geometryItem))
            substitute(items, i);
        const ShaderUsage* usage = item->shaderUsage.get();
        if (usage->isIdentity())
            for (Geometry* g = geometry; g; g = g->next())
                g->setHolesRegion(covered);
        if (hidesBeneath(usage) && isPlainRects(geometry))
            covered |= item->opaqueRect;
        if (isCullable(geometry)) {
            if (hidden)
                (*hidden)[i] = item;
            else
                delete item;
            items[i] = nullptr;
            continue;
        }
        mergeUpwards(items, i, hidden);
    }
    return covered;
}

void render(const RenderState& state, DisplayList* list)
{
    GLStateManager* gl = GLStateManager::instance();
    const bool identity = state.matrix.isIdentity();
    const QVector<RenderItem*>& items = list->items();
    const QVector<RenderItem*>& hidden = list->hiddenItems();
    const bool translucent = state.opacity < 1.0f && !hidden.isEmpty();
    for (int i = 0; i < items.size(); ++i) {
        RenderItem* item = items[i] || !translucent ? items[i] : hidden.value(i);
        if (!item)
            continue;
        const QRect screen = identity ? item->bounds : RenderItem::mappedBounds(state.matrix, item->bounds);
        const QRect clipped = screen & state.clipRect;
        if (clipped.isEmpty())
            continue;
        const QRect box = state.toWindow(clipped);
        gl->glEnable(GL_SCISSOR_TEST);
        gl->glScissor(box.x(), box.y(), box.width(), box.height());
        switch (item->type) {
        case RenderItem::kDisplayList:
            renderNested(state, static_cast<DisplayListRenderItem*>(item), screen, clipped);
            break;
        case RenderItem::kGeometry:
            render(state, static_cast<GeometryRenderItem*>(item), list);
            break;
        case RenderItem::kCustom:
            if (CommandRenderItem* command = static_cast<CustomRenderItem*>(item)->customRenderItemCast()) {
                // The scissor box holds the renderer in; a renderer that sets its own
                // finds the box in the clip rectangle.
                RenderState confined = state;
                confined.clipRect = clipped;
                command->run(confined);
            }
            break;
        case RenderItem::kSlice:
            render(state, static_cast<DisplayListSliceRenderItem*>(item));
            break;
        default:
            ORBIS_FAIL(QStringLiteral("Unknown render item: %1").arg(item->type));
            break;
        }
    }
}

void render(const RenderState& state, GeometryRenderItem* item, DisplayList* list)
{
    ShaderUsage* usage = item->shaderUsage.get();
    if (!usage || !usage->bind(state))
        return;
    setBlending(GLStateManager::instance(), usage, state);
    VertexBuffer* buffer = list->initOrGetVertexBuffer();
    for (Geometry* g = item->mGeometry; g; g = g->next()) {
        if (!g->isUploaded()) {
            const QVector<Vertex> vertices = g->triangulate();
            g->setUploaded(buffer->append(vertices), vertices.size());
        }
    }
    buffer->bind();
    GLFunctions* f = GLFunctions::current();
    for (Geometry* g = item->mGeometry; g; g = g->next())
        if (g->vertexCount() > 0)
            f->glDrawArrays(g->primitive(), g->firstVertex(), g->vertexCount());
}

void render(const RenderState& state, DisplayListSliceRenderItem* item)
{
    const bool translucent = state.opacity < 1.0f;
    const QVector<DisplayListSliceRenderItem::Range>& ranges = item->rangesFor(translucent);
    ShaderUsage* usage = item->usageFor(translucent);
    if (ranges.isEmpty() || !usage || !usage->bind(state))
        return;
    setBlending(GLStateManager::instance(), usage, state);
    item->buffer->bind();
    GLFunctions* f = GLFunctions::current();
    for (const DisplayListSliceRenderItem::Range& range : ranges)
        f->glDrawArrays(range.primitive, range.first, range.count);
}

} // namespace gfx
