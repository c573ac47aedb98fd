#include "DisplayDeviceWidget.h"

#include "DisplayDevice.h"

QGLWidget* DisplayDeviceWidget::mShareWidget = nullptr;

QGLFormat DisplayDeviceWidget::screenFormat()
{
    QGLFormat format;
    format.setDoubleBuffer(true);
    // Overdraw is counted in the stencil buffer.
    format.setStencil(true);
    format.setDepth(false);
    return format;
}

DisplayDeviceWidget::DisplayDeviceWidget(DisplayDevice* device)
    : QGLWidget(screenFormat(), nullptr, mShareWidget), mDevice(device)
{
    if (!mShareWidget)
        mShareWidget = this;
    setAutoBufferSwap(false);
    setAutoFillBackground(false);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

DisplayDeviceWidget::~DisplayDeviceWidget()
{
    if (mShareWidget == this)
        mShareWidget = nullptr;
}

void DisplayDeviceWidget::paintEvent(QPaintEvent*)
{
    // The window system lost the content (exposed, resized): the next tick redraws.
    mDevice->reveal();
}

void DisplayDeviceWidget::resizeEvent(QResizeEvent* event)
{
    QGLWidget::resizeEvent(event);
    mDevice->reveal();
}

void DisplayDeviceWidget::mousePressEvent(QMouseEvent* event)
{
    mDevice->doMouse(event);
}

void DisplayDeviceWidget::mouseMoveEvent(QMouseEvent* event)
{
    mDevice->doMouse(event);
}

void DisplayDeviceWidget::mouseReleaseEvent(QMouseEvent* event)
{
    mDevice->doMouse(event);
}

void DisplayDeviceWidget::wheelEvent(QWheelEvent* event)
{
    mDevice->doWheel(event);
}

void DisplayDeviceWidget::keyPressEvent(QKeyEvent* event)
{
    mDevice->doKeyPress(event);
}

void DisplayDeviceWidget::keyReleaseEvent(QKeyEvent* event)
{
    mDevice->doKeyRelease(event);
}
