#include "GLTestContext.h"

#include <CoverageMaskCache.h>
#include <GLStateManager.h>
#include <GlyphCache.h>
#include <ShaderCache.h>
#include <SharedTextureManager.h>
#include <TextureCache.h>

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <cstdlib>

namespace {
std::unique_ptr<QOpenGLContext> createContext(QOffscreenSurface& surface, QSurfaceFormat::RenderableType type)
{
    QSurfaceFormat format;
    format.setRenderableType(type);
    if (type == QSurfaceFormat::OpenGLES)
        format.setVersion(2, 0);
    auto context = std::make_unique<QOpenGLContext>();
    context->setFormat(format);
    if (!context->create() || !context->makeCurrent(&surface))
        return nullptr;
    return context;
}
} // namespace

GLTestContext::GLTestContext(const QSize& size) : mSize(size)
{
    mSurface = std::make_unique<QOffscreenSurface>();
    mSurface->create();
    mContext = createContext(*mSurface, QSurfaceFormat::OpenGLES);
    if (!mContext)
        mContext = createContext(*mSurface, QSurfaceFormat::OpenGL);
    if (!mContext)
        return;
    mFbo = std::make_unique<QOpenGLFramebufferObject>(size);
    mValid = mFbo->bind();
    mContext->functions()->glViewport(0, 0, size.width(), size.height());
    gfx::GLStateManager::instance()->clearToInvalid();
}

GLTestContext::~GLTestContext()
{
    if (mContext) {
        // Programs and textures belong to this context: delete them while it lives.
        mContext->makeCurrent(mSurface.get());
        gfx::ShaderCache::instance()->releaseAll();
        if (Singleton<gfx::GlyphCache>::exists())
            gfx::GlyphCache::instance()->releaseTextures();
        Singleton<gfx::CoverageMaskCache>::reset();
        Singleton<gfx::SharedTextureManager>::reset();
        if (Singleton<gfx::TextureCache>::exists()) {
            gfx::TextureCache::instance()->clear();
            gfx::TextureCache::instance()->destroyExpiredTextures();
        }
    }
    gfx::GLStateManager::instance()->clearToInvalid();
    mFbo.reset();
    if (mContext)
        mContext->doneCurrent();
}

void GLTestContext::clear(float r, float g, float b, float a)
{
    QOpenGLFunctions* f = mContext->functions();
    f->glDisable(GL_SCISSOR_TEST);
    f->glClearColor(r, g, b, a);
    f->glClear(GL_COLOR_BUFFER_BIT);
    gfx::GLStateManager::instance()->clearToInvalid();
}

QImage GLTestContext::image() const
{
    return mFbo->toImage();
}

bool colorsClose(QRgb actual, QRgb expected, int tolerance)
{
    return std::abs(qRed(actual) - qRed(expected)) <= tolerance &&
           std::abs(qGreen(actual) - qGreen(expected)) <= tolerance &&
           std::abs(qBlue(actual) - qBlue(expected)) <= tolerance &&
           std::abs(qAlpha(actual) - qAlpha(expected)) <= tolerance;
}
