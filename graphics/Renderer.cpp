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

// The first item below `index` that overlaps it decides: a solid, opaque fill
// that contains it is folded into its shader.
void substitute(QVector<RenderItem*>& items, int index)
{
    RenderItem* item = items[index];
    for (int j = index - 1; j >= 0; --j) {
        RenderItem* below = items[j];
        if (isSkipped(below) || !below->bounds.intersects(item->bounds))
            continue;
        if (below->bounds.contains(item->bounds) && below->type == RenderItem::kGeometry &&
            isPlainRects(static_cast<GeometryRenderItem*>(below)->mGeometry)) {
            const auto* fill = dynamic_cast<const ColorShaderUsage*>(below->shaderUsage.get());
            if (fill && !fill->needsBlending())
                item->shaderUsage.reset(TextureShaderUsage::opacify(item->shaderUsage.get(), fill->color()));
        }
        return;
    }
}

bool wantsSubstitution(const GeometryRenderItem* item)
{
    const ShaderUsage* usage = item->shaderUsage.get();
    return dynamic_cast<const TextureShaderUsage*>(usage) && usage->needsBlending() &&
           usage->opacity() >= 1.0f && isPlainRects(item->mGeometry) &&
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

void mergeUpwards(QVector<RenderItem*>& items, int index)
{
    auto* item = static_cast<GeometryRenderItem*>(items[index]);
    for (int k = index + 1; k < items.size(); ++k) {
        RenderItem* later = items[k];
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

QRegion optimize(QVector<RenderItem*>& items, bool allowSubstitution)
{
    QRegion covered;
    for (int i = items.size() - 1; i >= 0; --i) {
        RenderItem* item = items[i];
        if (isSkipped(item))
            continue;
        if (item->type != RenderItem::kGeometry) {
            if (!item->shaderUsage || !item->shaderUsage->needsBlending())
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
        if (!usage->needsBlending() && isPlainRects(geometry))
            covered |= item->opaqueRect;
        if (isCullable(geometry)) {
            delete item;
            items[i] = nullptr;
            continue;
        }
        mergeUpwards(items, i);
    }
    return covered;
}

void render(const RenderState& state, DisplayList* list)
{
    GLStateManager* gl = GLStateManager::instance();
    const bool identity = state.matrix.isIdentity();
    for (RenderItem* item : list->items()) {
        if (!item)
            continue;
        const QRect screen = identity ? item->bounds : state.matrix.mapRect(item->bounds);
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
            if (CommandRenderItem* command = static_cast<CustomRenderItem*>(item)->customRenderItemCast())
                command->run(state);
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
    ShaderUsage* usage = item->shaderUsage.get();
    if (!usage || !usage->bind(state))
        return;
    setBlending(GLStateManager::instance(), usage, state);
    item->buffer->bind();
    GLFunctions* f = GLFunctions::current();
    for (const DisplayListSliceRenderItem::Range& range : qAsConst(item->ranges))
        f->glDrawArrays(range.primitive, range.first, range.count);
}

} // namespace gfx
