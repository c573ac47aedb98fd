#pragma once

#include <DisplayDevice.h>

#include <QCoreApplication>

// A shown 1280 x 800 screen for the frame benchmarks, its frame timer stopped.
// Each kind of screen is made once, on first use, and goes before the
// application does (its GL objects with it).
class BenchScreen
{
public:
    // nullptr when there is no display with OpenGL here.
    template <typename Screen> static Screen* get()
    {
        static Screen* screen = nullptr;
        if (!screen) {
            screen = new Screen;
            qAddPostRoutine([] {
                delete screen;
                screen = nullptr;
            });
        }
        return screen->mDevice.hasWindow() ? screen : nullptr;
    }

    virtual ~BenchScreen() = default;
    // One frame, timed up to the end of the GPU work.
    void frame();

    DisplayDevice mDevice{1280, 800};

protected:
    BenchScreen();
};
