#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QSize>

class QGLFramebufferObject;
class QGLWidget;
class ViewBuffer;

// Gives the layers of one screen their framebuffers in the screen's GL context and
// brackets the drawing of a frame. Framebuffers are made at the size a layer is
// rendered at and replaced when that size or the backing type changes.
class ORBIS_UI_INTERNAL_EXPORT ViewBufferManager
{
public:
    explicit ViewBufferManager(QGLWidget* widget) : mWidget(widget) {}

    // Makes the screen's context current.
    void beginDrawing();
    // Leaves the screen as the draw target and the GL state cache invalid, since
    // Qt's painters change GL state behind it. After a frame that drew into no
    // layer the screen is still bound.
    void endDrawing();
    void bindScreen();
    void bind(QGLFramebufferObject* framebuffer);
    bool isDrawing() const { return mDrawing; }

    // Before a layer is drawn into. Returns whether the buffer got a new framebuffer,
    // whose content is undefined.
    bool prepare(ViewBuffer* buffer, const QSize& pixelSize);

    // Framebuffers made since start-up (a steady scene stops making them).
    int framebuffersCreated() const { return mCreated; }

private:
    QGLWidget* mWidget;
    bool mDrawing = false;
    bool mOffScreen = false;
    int mCreated = 0;
};
