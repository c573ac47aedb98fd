#include "BenchGLContext.h"

#include <GLStateManager.h>
#include <GlyphCache.h>
#include <ShaderCache.h>
#include <SharedTextureManager.h>
#include <TextureCache.h>

#include <QCoreApplication>
#include <QOpenGLFunctions>

using namespace gfx;

const QSize BenchGLContext::kScreen(1280, 800);

BenchGLContext* BenchGLContext::get()
{
    static BenchGLContext* context = nullptr;
    if (!context) {
        context = new BenchGLContext;
        // GL objects must go before the application does.
        qAddPostRoutine([] {
            delete context;
            context = nullptr;
        });
    }
    return context->mFbo ? context : nullptr;
}

BenchGLContext::BenchGLContext()
{
    mSurface.create();
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGLES);
    format.setVersion(2, 0);
    mContext.setFormat(format);
    if (!mContext.create() || !mContext.makeCurrent(&mSurface))
        return;
    mFbo = std::make_unique<QOpenGLFramebufferObject>(kScreen);
}

BenchGLContext::~BenchGLContext()
{
    mContext.makeCurrent(&mSurface);
    ShaderCache::instance()->releaseAll();
    if (Singleton<GlyphCache>::exists())
        GlyphCache::instance()->releaseTextures();
    Singleton<SharedTextureManager>::reset();
    TextureCache::instance()->clear();
    TextureCache::instance()->destroyExpiredTextures();
    mFbo.reset();
}

void BenchGLContext::begin()
{
    mContext.makeCurrent(&mSurface);
    mFbo->bind();
    mContext.functions()->glViewport(0, 0, kScreen.width(), kScreen.height());
    GLStateManager::instance()->clearToInvalid();
}

void BenchGLContext::finish()
{
    mContext.functions()->glFinish();
}

QImage BenchGLContext::pattern(int w, int h, int seed, bool alpha)
{
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            image.setPixel(x, y,
                           qPremultiply(qRgba((x * 7 + seed * 40) & 255, (y * 5) & 255, seed * 30 & 255,
                                              alpha ? (x + y) * 9 & 255 : 255)));
    return image;
}
