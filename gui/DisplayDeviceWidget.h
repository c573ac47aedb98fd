#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QGLWidget>

class DisplayDevice;

/// The GL window of one screen. The device decides when to draw and swap, so
/// automatic swapping and background filling are off; pointer and key input go to
/// the device. Every window shares its context with the first one made, so that
/// textures and programs serve all screens.
class ORBIS_UI_EXPORT DisplayDeviceWidget : public QGLWidget
{
    Q_OBJECT

public:
    explicit DisplayDeviceWidget(DisplayDevice* device);
    ~DisplayDeviceWidget() override;

    static QGLWidget* mShareWidget;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    static QGLFormat screenFormat();

    DisplayDevice* mDevice;
};
