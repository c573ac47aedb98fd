#pragma once

#include <GLCallRecorder.h>

// A GLCallRecorder installed as the driver for its lifetime, with the GL state
// cache cleared on the way in and out. Without a target it needs no context.
class ScopedGLRecorder : public gfx::GLCallRecorder
{
public:
    explicit ScopedGLRecorder(gfx::GLFunctions* target = nullptr);
    ~ScopedGLRecorder() override;
    ScopedGLRecorder(const ScopedGLRecorder&) = delete;
    ScopedGLRecorder& operator=(const ScopedGLRecorder&) = delete;

private:
    gfx::GLFunctions* mPrevious;
};
