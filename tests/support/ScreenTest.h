#pragma once

#include "DisplayDevice.h"

#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

// A shown screen whose frames the test runs by hand (the frame timer is stopped),
// with the composited pictures read back through screenshots.
class ScreenTest : public ::testing::Test
{
public:
    // `wanted`, moved as little as needed for a window of `size` to lie on the
    // screen, whatever size the X server was started with.
    static QPoint onScreen(QPoint wanted, QSize size);

protected:
    void TearDown() override;

    // Other GL tests may run at the same time on the same X server: `position`
    // keeps a window out of their way (within the screen).
    DisplayDevice& open(int width, int height, QPoint position = QPoint());
    // The composited frame, as the next tick draws it.
    QImage frame();
    static QRgb at(const QImage& image, int x, int y) { return image.pixel(x, y) | 0xff000000; }

    std::unique_ptr<DisplayDevice> mDevice;

private:
    QTemporaryDir mDir;
    int mShots = 0;
};
