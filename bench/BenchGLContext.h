#pragma once

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <memory>

// An offscreen GLES 2 context with one screen-sized framebuffer, made once and
// shared by the GL benchmarks.
class BenchGLContext
{
public:
    static const QSize kScreen;

    // The context, or nullptr when no GL context can be made here.
    static BenchGLContext* get();

    // Makes the context current with its framebuffer bound and the state cache reset.
    void begin();
    void finish();

    // A deterministic test picture, premultiplied.
    static QImage pattern(int w, int h, int seed, bool alpha);

private:
    BenchGLContext();
    ~BenchGLContext();

    QOffscreenSurface mSurface;
    QOpenGLContext mContext;
    std::unique_ptr<QOpenGLFramebufferObject> mFbo;
};
