// The frame of a DisplayDevice: the tick, the rendering of dirty layers into their
// framebuffers, their compositing onto the window, frame statistics and screenshots.
#include "DisplayDevice.h"

#include "DisplayDeviceWidget.h"
#include "DisplayViewEffect.h"
#include "GfxMemoryLabel.h"
#include "Graphics.h"
#include "ScreenshotProcessor.h"
#include "ViewBufferManager.h"
#include "devtools/DevToolsServer.h"

#include <ConfigValue.h>
#include <DisplayList.h>
#include <EventRecorder.h>
#include <GLFunctions.h>
#include <GLStateManager.h>
#include <GeometryBufferAllocator.h>
#include <GlyphCache.h>
#include <GraphicsPaintDevice.h>
#include <Logger.h>
#include <PerfLogger.h>
#include <QGLFramebufferObject>
#include <QThreadPool>
#include <RenderItem.h>
#include <RenderItemBuilder.h>
#include <RenderState.h>
#include <ShaderCache.h>
#include <ShaderUsage.h>
#include <SharedTextureManager.h>
#include <TextureCache.h>
#include <cstdlib>

static const char* const kLogSource = "../../../gui/DisplayDevice";

static ConfigBoolValue gContentRasterization("ui/gfx_content_rasterization", false);
// Every layer painted by Qt's own GL paint engine instead of the framework's.
static ConfigBoolValue gQtPaintEngine("ui/qt_paint_engine", false);
static ConfigBoolValue gClearRandom("ui/gl_clear_random", false);
static ConfigBoolValue gTextureCacheLogging("ui/gfx_texture_cache_logging", false);
static ConfigBoolValue gShowGfxMemoryUsage("ui/show_gfx_memory_usage", false);
static ConfigBoolValue gShowOverdraw("ui/gl_show_overdraw", false);
static ConfigBoolValue gLogDirtyArea("ui/log_dirty_area", false);
static ConfigIntValue gFrameRateErrorLevel("ui/frame_rate_error_level", 15);
static ConfigBoolValue gDirtyRects("ui/dirty_rects", true);
static ConfigBoolValue gShowDirtyRects("ui/show_dirty_rects", false);
static ConfigBoolValue gLogFrameStats("ui/log_frame_stats", false);
static ConfigIntValue gMaxSingleLayerArea("ui/max_single_layer_area", -1);
static ConfigStringValue gCompImageLocation("gui_comp_image_location", QString());
static ConfigIntValue gCompImageX("gui_comp_image_x", 0);
static ConfigIntValue gCompImageY("gui_comp_image_y", 0);

namespace {

// Framebuffer textures hold the top row at t = 1: sample them upside down.
const gfx::TexCoordInsets kFlipped{0, 1, 0, 1};

qint64 areaOf(const QRegion& region)
{
    qint64 area = 0;
    for (const QRect& rect : region)
        area += qint64(rect.width()) * rect.height();
    return area;
}

// A full cache that still has to let textures go each frame re-uploads what it
// just dropped.
bool textureCacheThrashing()
{
    gfx::TextureCache* cache = gfx::TextureCache::instance();
    return cache->maxSize() > 0 && !cache->expiredTextures().isEmpty() &&
           cache->currentSize() + cache->elasticity() >= cache->maxSize();
}

// The layer through its mask's alpha. The layer is sampled bottom-up (framebuffer
// rows), the mask top-down, as pictures are uploaded.
const gfx::CustomShaderKey& maskedLayerShader()
{
    static const gfx::CustomShaderKey key = gfx::ShaderCache::instance()->registerCustomShader(
        "uniform sampler2D uTexture;\nuniform sampler2D uTexture1;\nuniform float uOpacity;\n"
        "void main() {\n"
        "    float mask = texture2D(uTexture1, vec2(vTexCoord.x, 1.0 - vTexCoord.y)).a;\n"
        "    gl_FragColor = texture2D(uTexture, vTexCoord) * mask * uOpacity;\n"
        "}\n");
    return key;
}

// Whether every item draws only inside the damage, so that the list can be drawn
// once over all of it. Items without a matrix were cut to it when they were built;
// a moved or turned layer is cut only by the scissor box of its bounds.
bool withinDamage(const gfx::DisplayList& list, const QRegion& damage)
{
    for (const gfx::RenderItem* item : list.items()) {
        if (item && item->shaderUsage && !item->shaderUsage->isIdentity() &&
            !QRegion(item->bounds).subtracted(damage).isEmpty())
            return false;
    }
    return true;
}

void drawLayer(gfx::RenderItemBuilder& builder, DisplayView* layer, const QMatrix4x4& matrix, bool blend)
{
    const gfx::Shape shape(QRectF(layer->drawingAreaRect()), QTransform(), kFlipped);
    const gfx::TextureKey mask = layer->layerMask().texture();
    if (mask.isNull())
        builder.drawTexturedShape(shape, layer->layer()->texture(), matrix, blend);
    else
        builder.drawMaskedTexturedShape(shape, layer->layer()->texture(), mask, maskedLayerShader(), matrix);
}

} // namespace

void DisplayDevice::doTick()
{
    EventRecorder::instance().mark(QStringLiteral("tick"), EventRecorder::Begin);
    mFrameTimer.start();
    gfx::GeometryBufferAllocator::instance()->nextFrame();
    startFrame();
    dispatchTick(this);
    finishFrame();
    measureFrameRate();
    EventRecorder::instance().mark(QStringLiteral("tick"), EventRecorder::End);
}

void DisplayDevice::finishFrame()
{
    if (!gDirtyRects.value())
        markDirtyRectsForRendering(true, true);
    if (mWidget && mWidget->isVisible()) {
        mBufferManager->beginDrawing();
        mNestedRendered.clear();
        {
            PerfLogger::Span span(QStringLiteral("DisplayDevice-RenderViews"));
            renderViews(this, nullptr);
        }
        gfx::GlyphCache::instance()->nextFrame();
        {
            PerfLogger::Span span(QStringLiteral("DisplayDevice-CompositeNestedLayers"));
            compositeNestedLayers();
        }
        const bool drawing = !mCompositeRegion.isEmpty();
        if (drawing) {
            PerfLogger::Span span(QStringLiteral("DisplayDevice-CompositeLayers"));
            compositeLayers();
            captureScreenshot();
        }
        mBufferManager->endDrawing();
        if (textureCacheThrashing())
            ORBIS_WARN(QStringLiteral("TextureCache is maxed out and thrashing.  UI Performance Limited."));
        if (gTextureCacheLogging.value())
            ORBIS_INFO(QStringLiteral("TextureCache: %1 textures, %2 bytes, %3 expired")
                           .arg(gfx::TextureCache::instance()->entryCount())
                           .arg(gfx::TextureCache::instance()->currentSize())
                           .arg(gfx::TextureCache::instance()->expiredTextures().size()));
        gfx::SharedTextureManager::instance()->destroyPendingTextures();
        gfx::TextureCache::instance()->destroyExpiredTextures();
        if (drawing) {
            ++mStats.drawnFrames;
            mWidget->swapBuffers();
        }
    } else {
        takeDirtyRegions(nullptr, nullptr);
    }
    ++mSecondTicks;
    if (mSecondTimer.elapsed() >= 1000) {
        updateGfxMemoryLabel();
        dispatchTick1s(this);
        measureTick1sRate();
        mSecondTimer.restart();
    }
    if (mInspector)
        mInspector->frameFinished();
}

QMatrix4x4 DisplayDevice::screenMatrix(DisplayView* view) const
{
    QMatrix4x4 matrix;
    for (; view && view != this; view = view->mParentView) {
        QMatrix4x4 step;
        const QPoint at = view->positionInParent();
        step.translate(float(at.x()), float(at.y()));
        step *= view->layerTransform();
        matrix = step * matrix;
    }
    return matrix;
}

void DisplayDevice::renderViews(DisplayView* view, DisplayView* layerParent)
{
    if (!view->mVisible && !(view->mDrawingFlags & DrawWhenHidden))
        return;
    if (ViewBuffer* buffer = view->layer()) {
        DisplayView* target = view->nestingTarget();
        if (target && buffer->isDirty()) {
            // The target holds this layer's pixels: it must be recomposited there.
            const QMatrix4x4 toTarget = screenMatrix(target).inverted() * screenMatrix(view);
            for (const QRect& rect : buffer->dirtyRegion())
                mNestedRendered[target] += gfx::RenderItem::mappedBounds(toTarget, rect);
        }
        renderView(view, buffer, target == nullptr);
        layerParent = view;
    }
    const DisplayViewList::List children = view->children().list();
    for (DisplayView* child : children)
        renderViews(child, layerParent);
    if (DisplayViewEffect* effect = view->effect())
        effect->apply();
}

void DisplayDevice::renderView(DisplayView* view, ViewBuffer* buffer, bool revealOnScreen)
{
    const QRect area = view->drawingAreaRect();
    if (!buffer->isDirty() || area.isEmpty())
        return;
    QRegion dirty = buffer->takeDirtyRegion() & area;
    if (dirty.isEmpty())
        return;
    if (revealOnScreen) {
        const QMatrix4x4 toScreen = screenMatrix(view);
        for (const QRect& rect : dirty)
            reveal(gfx::RenderItem::mappedBounds(toScreen, rect));
    }
    const QSize pixels = Graphics::roundedScaledRect(QRect(QPoint(), area.size()), windowScale).size();
    const int maxArea = gMaxSingleLayerArea.value();
    if (maxArea != -1 && qint64(pixels.width()) * pixels.height() > maxArea) {
        const QString message =
            QStringLiteral("Trying to draw a layer that exceeds the maximum area of %1: %2 x %3 View: %4")
                .arg(maxArea)
                .arg(pixels.width())
                .arg(pixels.height())
                .arg(view->viewPath());
        ORBIS_WARN(message);
        Logger::logAssert("pixels.width() * pixels.height() <= maxArea", message, kLogSource, __LINE__);
        return;
    }
    if (mBufferManager->prepare(buffer, pixels))
        dirty = QRegion(area);
    if (view->mCompositeNestedLayers)
        mNestedRendered[view] += dirty;
    QGLFramebufferObject* framebuffer = buffer->framebuffer();
    if (!ORBIS_ASSERT(framebuffer->isValid(), QStringLiteral("Layer framebuffer could not be made")))
        return;

    // Layer coordinates to framebuffer pixels.
    QTransform toPixels;
    toPixels.scale(windowScale, windowScale);
    toPixels.translate(-area.left(), -area.top());
    if (gContentRasterization.value() || gQtPaintEngine.value() ||
        buffer->backingType() == ViewBuffer::QtPaintEngineBacking)
        paintWithQt(view, buffer, toPixels, dirty);
    else
        paintWithGraphics(view, buffer, toPixels, dirty);
    mStats.renderedPixels += areaOf(dirty);
}

void DisplayDevice::paintWithGraphics(DisplayView* view, ViewBuffer* buffer, const QTransform& toPixels,
                                      const QRegion& dirty)
{
    QGLFramebufferObject* framebuffer = buffer->framebuffer();
    const QRegion pixelDirty = toPixels.map(dirty);
    gfx::GraphicsPaintDevice device(framebuffer->size(), pixelDirty);
    QPainter painter(&device);
    painter.setTransform(toPixels);
    paintLayerContent(painter, view, buffer, dirty);
    painter.end();
    auto list = device.engine()->createDisplayList();
    list->optimize();

    mBufferManager->bind(framebuffer);
    gfx::GLStateManager* gl = gfx::GLStateManager::instance();
    gfx::GLFunctions* f = gfx::GLFunctions::current();
    const gfx::RenderState state(framebuffer->size());
    f->glViewport(0, 0, framebuffer->width(), framebuffer->height());
    gl->glEnable(GL_SCISSOR_TEST);
    // What the list's opaque items cover is replaced anyway.
    const QRegion uncovered = pixelDirty.subtracted(list->coveredRegion());
    if (!uncovered.isEmpty())
        gl->glClearColor(0, 0, 0, 0);
    for (const QRect& rect : uncovered) {
        const QRect box = state.toWindow(rect);
        gl->glScissor(box.x(), box.y(), box.width(), box.height());
        f->glClear(GL_COLOR_BUFFER_BIT);
    }
    list->render(state);
}

void DisplayDevice::paintWithQt(DisplayView* view, ViewBuffer* buffer, const QTransform& toPixels,
                                const QRegion& dirty)
{
    QGLFramebufferObject* framebuffer = buffer->framebuffer();
    // Qt's engine draws from client memory: a bound vertex buffer would take its pointers.
    gfx::GLStateManager::instance()->glBindBufferArray(0);
    QPainter painter(framebuffer);
    painter.setTransform(toPixels);
    painter.setClipRegion(dirty);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (const QRect& rect : dirty)
        painter.fillRect(rect, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (gContentRasterization.value()) {
        // Painted on the processor and copied in: a reference for the GL painters.
        QImage image(framebuffer->size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter raster(&image);
        raster.setTransform(toPixels);
        paintLayerContent(raster, view, buffer, dirty);
        raster.end();
        painter.resetTransform();
        painter.setClipRegion(toPixels.map(dirty));
        painter.drawImage(0, 0, image);
    } else {
        paintLayerContent(painter, view, buffer, dirty);
    }
    painter.end();
    // Qt's engine changed GL state behind the cache.
    gfx::GLStateManager::instance()->clearToInvalid();
}

void DisplayDevice::paintLayerContent(QPainter& painter, DisplayView* view, ViewBuffer* buffer,
                                      const QRegion& dirty)
{
    Graphics::setPainterLayoutScale(painter, windowScale);
    if (buffer->backingType() == ViewBuffer::MultisampledBacking)
        painter.setRenderHint(QPainter::Antialiasing);
    // Children replace the clip with their own rectangle cut by the one passed
    // down, so each dirty rectangle is painted on its own. The layer's opacity and
    // transform are applied when it is composited.
    for (const QRect& rect : dirty) {
        const QRect area = rect & view->drawingLayerRect();
        if (area.isEmpty())
            continue;
        painter.setClipRect(area);
        if (!(view->mDrawingFlags & NoDrawing))
            view->draw(painter);
        view->drawChildren(painter, area, QPoint());
        painter.setClipRect(area);
        view->drawOverlay(painter);
    }
    Graphics::removePainterLayoutScale(painter);
}

void DisplayDevice::compositeNestedLayers()
{
    for (auto it = mNestedRendered.constBegin(); it != mNestedRendered.constEnd(); ++it) {
        DisplayView* target = it.key();
        ViewBuffer* buffer = target->layer();
        if (!buffer || !buffer->framebuffer())
            continue;
        gfx::RenderItemBuilder builder;
        const QMatrix4x4 fromScreen = screenMatrix(target).inverted();
        QVector<DisplayView*> layers;
        collectLayers(target, &layers);
        for (DisplayView* layer : qAsConst(layers)) {
            if (layer == target || layer->nestingTarget() != target || !layer->layer()->framebuffer())
                continue;
            builder.setOpacity(layer->mAlpha);
            drawLayer(builder, layer, fromScreen * screenMatrix(layer),
                      layer->layer()->backingType() != ViewBuffer::OpaqueBacking);
        }
        if (builder.items().isEmpty())
            continue;
        QGLFramebufferObject* framebuffer = buffer->framebuffer();
        mBufferManager->bind(framebuffer);
        gfx::GLStateManager::instance()->clearToInvalid();
        gfx::RenderState state(framebuffer->size());
        state.matrix.scale(float(windowScale));
        state.matrix.translate(-target->drawingAreaRect().left(), -target->drawingAreaRect().top());
        gfx::GLFunctions::current()->glViewport(0, 0, framebuffer->width(), framebuffer->height());
        auto list = builder.createDisplayList(false);
        list->optimize();
        for (const QRect& rect : it.value()) {
            state.clipRect = state.matrix.mapRect(rect);
            list->render(state);
        }
    }
    mNestedRendered.clear();
}

void DisplayDevice::collectLayers(DisplayView* view, QVector<DisplayView*>* layers)
{
    if (!view->mVisible || view->mAlpha <= 0)
        return;
    if (view->layer())
        layers->append(view);
    for (DisplayView* child : view->children().list())
        collectLayers(child, layers);
}

void DisplayDevice::compositeLayers()
{
    QRegion region;
    takeDirtyRegions(nullptr, &region);
    region &= QRect(0, 0, width(), height());
    if (region.isEmpty())
        return;
    gfx::GLStateManager* gl = gfx::GLStateManager::instance();
    gl->clearToInvalid();
    mBufferManager->bindScreen();
    gfx::GLFunctions* f = gfx::GLFunctions::current();
    f->glViewport(0, 0, mWindowSize.width(), mWindowSize.height());

    gfx::RenderItemBuilder builder(region);
    QVector<DisplayView*> layers;
    collectLayers(this, &layers);
    for (DisplayView* layer : qAsConst(layers)) {
        if (layer->nestingTarget() || !layer->layer()->framebuffer())
            continue;
        float opacity = 1.0f;
        for (DisplayView* v = layer; v; v = v->mParentView)
            opacity *= float(v->mAlpha);
        builder.setOpacity(opacity);
        drawLayer(builder, layer, screenMatrix(layer),
                  layer->layer()->backingType() != ViewBuffer::OpaqueBacking || opacity < 1.0f);
    }
    const QString image = gCompImageLocation.value();
    if (!image.isEmpty()) {
        const gfx::TextureKey key = gfx::TextureCache::instance()->addOrLookup(image);
        builder.setOpacity(1.0f);
        builder.drawTexturedRect(QRect(QPoint(gCompImageX.value(), gCompImageY.value()), key.size()), key,
                                 true);
    }
    auto list = builder.createDisplayList(false);
    list->optimize();

    gfx::RenderState state(mWindowSize);
    state.matrix = mWindowMatrix;
    const bool overdraw = gShowOverdraw.value();
    if (overdraw) {
        gl->glEnable(GL_STENCIL_TEST);
        f->glClearStencil(0);
        f->glStencilFunc(GL_ALWAYS, 0, 0xff);
        f->glStencilOp(GL_KEEP, GL_INCR, GL_INCR);
    }
    const bool onePass = withinDamage(*list, region);
    for (const QRect& rect : region) {
        const QRect window = mWindowMatrix.mapRect(rect);
        gl->glEnable(GL_SCISSOR_TEST);
        const QRect box = state.toWindow(window);
        gl->glScissor(box.x(), box.y(), box.width(), box.height());
        if (gClearRandom.value())
            gl->glClearColor(float(std::rand() % 256) / 255, float(std::rand() % 256) / 255,
                             float(std::rand() % 256) / 255, 1);
        else
            gl->glClearColor(0, 0, 0, 1);
        f->glClear(GL_COLOR_BUFFER_BIT | (overdraw ? GL_STENCIL_BUFFER_BIT : 0));
        if (!onePass) {
            state.clipRect = window;
            list->render(state);
        }
    }
    if (onePass) {
        state.clipRect = mWindowMatrix.mapRect(region.boundingRect());
        list->render(state);
    }
    if (overdraw)
        showOverdraw(region);
    if (gShowDirtyRects.value())
        drawDirtyRects(region);
    gl->glDisable(GL_SCISSOR_TEST);
    const qint64 area = areaOf(region);
    mStats.compositedPixels += area;
    if (gLogDirtyArea.value())
        ORBIS_INFO(
            QStringLiteral("Dirty area: %1 pixels in %2 rectangles").arg(area).arg(region.rectCount()));
}

void DisplayDevice::showOverdraw(const QRegion& region)
{
    // Each stencil count gets its own tint: once is clear, then blue, green, red.
    static const QColor kTints[] = {QColor(0, 0, 255, 96), QColor(0, 255, 0, 96), QColor(255, 0, 0, 96)};
    gfx::GLFunctions* f = gfx::GLFunctions::current();
    gfx::GLStateManager::instance()->glEnable(GL_SCISSOR_TEST);
    f->glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    gfx::RenderState state(mWindowSize);
    state.matrix = mWindowMatrix;
    state.clipRect = mWindowMatrix.mapRect(region.boundingRect());
    for (int count = 2; count <= 4; ++count) {
        gfx::RenderItemBuilder builder;
        builder.drawColoredRegion(region, kTints[count - 2]);
        auto list = builder.createDisplayList(false);
        list->optimize();
        f->glStencilFunc(count == 4 ? GL_LEQUAL : GL_EQUAL, count, 0xff);
        list->render(state);
    }
    gfx::GLStateManager::instance()->glDisable(GL_STENCIL_TEST);
}

void DisplayDevice::drawDirtyRects(const QRegion& region)
{
    gfx::RenderItemBuilder builder;
    for (const QRect& r : region) {
        builder.drawColoredRect(QRect(r.left(), r.top(), r.width(), 1), Qt::magenta);
        builder.drawColoredRect(QRect(r.left(), r.bottom(), r.width(), 1), Qt::magenta);
        builder.drawColoredRect(QRect(r.left(), r.top(), 1, r.height()), Qt::magenta);
        builder.drawColoredRect(QRect(r.right(), r.top(), 1, r.height()), Qt::magenta);
    }
    auto list = builder.createDisplayList(false);
    list->optimize();
    gfx::RenderState state(mWindowSize);
    state.matrix = mWindowMatrix;
    list->render(state);
}

// Statistics

qint64 DisplayDevice::layerMemory(int* count)
{
    qint64 bytes = 0;
    int layers = 0;
    QList<DisplayView*> pending{this};
    while (!pending.isEmpty()) {
        DisplayView* view = pending.takeLast();
        if (view->layer() && view->layer()->framebuffer()) {
            const QSize size = view->layer()->framebuffer()->size();
            bytes += qint64(size.width()) * size.height() * 4;
            ++layers;
        }
        for (DisplayView* child : view->children().list())
            pending.append(child);
    }
    if (count)
        *count = layers;
    return bytes;
}

void DisplayDevice::updateGfxMemoryLabel()
{
    if (gShowGfxMemoryUsage.value() && !mGfxMemoryLabel) {
        mGfxMemoryLabel = new GfxMemoryLabel(mOverlays, this);
    } else if (!gShowGfxMemoryUsage.value() && mGfxMemoryLabel) {
        delete mGfxMemoryLabel;
        mGfxMemoryLabel = nullptr;
    }
}

void DisplayDevice::measureFrameRate()
{
    if (!mFrameTimer.isValid())
        return;
    const qint64 ns = mFrameTimer.nsecsElapsed();
    ++mStats.ticks;
    mStats.totalNs += ns;
    mStats.maxNs = qMax(mStats.maxNs, ns);
}

void DisplayDevice::measureTick1sRate()
{
    const double seconds = mSecondTimer.secondsElapsed();
    mStats.lastSecondTicks = mSecondTicks;
    mSecondTicks = 0;
    const double rate = seconds > 0 ? mStats.lastSecondTicks / seconds : 0.0;
    if (rate < gFrameRateErrorLevel.value())
        ORBIS_WARN(QStringLiteral("Frame rate %1 is below %2")
                       .arg(rate, 0, 'f', 1)
                       .arg(gFrameRateErrorLevel.value()));
    if (gLogFrameStats.value())
        dumpStats();
}

QString DisplayDevice::dumpStats()
{
    const FrameStats& s = mStats;
    const double averageMs = s.ticks ? s.totalNs / 1e6 / s.ticks : 0.0;
    const QString text =
        QStringLiteral("Frame stats: %1 ticks, %2 drawn, average %3 ms, max %4 ms, rendered %5 px, "
                       "composited %6 px, %7 ticks in the last second")
            .arg(s.ticks)
            .arg(s.drawnFrames)
            .arg(averageMs, 0, 'f', 3)
            .arg(s.maxNs / 1e6, 0, 'f', 3)
            .arg(s.renderedPixels)
            .arg(s.compositedPixels)
            .arg(s.lastSecondTicks);
    ORBIS_INFO(text);
    return text;
}

void DisplayDevice::resetStats()
{
    mStats = FrameStats();
}

// Screenshots

void DisplayDevice::screenshot(QString path)
{
    screenshot(0, 0, width(), height(), path);
}

void DisplayDevice::screenshot(int x, int y, int width, int height, QString path)
{
    const QRect rect = QRect(x, y, width, height) & QRect(0, 0, this->width(), this->height());
    if (!ORBIS_ASSERT(!rect.isEmpty() && !path.isEmpty(),
                      QStringLiteral("Screenshot of an empty area or to no file")))
        return;
    if (!ORBIS_ASSERT(mWidget, QStringLiteral("Screenshot without a window")))
        return;
    mScreenshots.append({rect, path, nullptr});
    // The whole area is composited again so that the capture does not depend on
    // what the back buffer kept from earlier frames.
    reveal(rect);
}

void DisplayDevice::grabFrame(std::function<void(const QImage&)> done)
{
    if (!ORBIS_ASSERT(mWidget, QStringLiteral("Screenshot without a window")))
        return;
    mScreenshots.append({rect(), QString(), std::move(done)});
    reveal(rect());
}

void DisplayDevice::captureScreenshot()
{
    if (mScreenshots.isEmpty())
        return;
    const QImage frame = mWidget->grabFrameBuffer(false);
    // A receiver may ask for the next frame already.
    const QList<PendingScreenshot> shots = std::move(mScreenshots);
    mScreenshots.clear();
    for (const PendingScreenshot& shot : shots) {
        const QImage pixels = frame.copy(mWindowMatrix.mapRect(shot.rect));
        if (shot.done)
            shot.done(pixels);
        else
            QThreadPool::globalInstance()->start(new ScreenshotProcessor(pixels, shot.path));
    }
    gfx::GLStateManager::instance()->clearToInvalid();
}
