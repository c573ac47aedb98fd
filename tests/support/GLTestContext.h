#pragma once

#include <QImage>
#include <QSize>
#include <memory>

class QOffscreenSurface;
class QOpenGLContext;
class QOpenGLFramebufferObject;

// A current GL context with a framebuffer object to draw into, for tests that need
// a real driver (llvmpipe under Xvfb). Prefers an OpenGL ES 2 context; where the
// platform offers none, a desktop context runs the same ES 2 subset and
// "#version 100" shaders. The engine's GL state cache is cleared on creation and
// destruction, since it mirrors one context only; compiled programs and cached
// textures are deleted with the context (release texture keys before).
class GLTestContext
{
public:
    explicit GLTestContext(const QSize& size = QSize(64, 64));
    ~GLTestContext();
    GLTestContext(const GLTestContext&) = delete;
    GLTestContext& operator=(const GLTestContext&) = delete;

    bool isValid() const { return mValid; }
    QSize size() const { return mSize; }
    QOpenGLContext* context() const { return mContext.get(); }

    // Clears the framebuffer to a colour (premultiplied components 0..1).
    void clear(float r, float g, float b, float a);
    // The framebuffer with the top row first.
    QImage image() const;
    QRgb pixel(int x, int y) const { return image().pixel(x, y); }

private:
    QSize mSize;
    bool mValid = false;
    std::unique_ptr<QOffscreenSurface> mSurface;
    std::unique_ptr<QOpenGLContext> mContext;
    std::unique_ptr<QOpenGLFramebufferObject> mFbo;
};

// Whether two colours agree within `tolerance` per channel (the software
// rasteriser rounds blends differently from exact arithmetic).
bool colorsClose(QRgb actual, QRgb expected, int tolerance = 2);
