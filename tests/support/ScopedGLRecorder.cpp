#include "ScopedGLRecorder.h"

#include <GLStateManager.h>

ScopedGLRecorder::ScopedGLRecorder(gfx::GLFunctions* target)
    : gfx::GLCallRecorder(target), mPrevious(gfx::GLFunctions::install(this))
{
    gfx::GLStateManager::instance()->clearToInvalid();
}

ScopedGLRecorder::~ScopedGLRecorder()
{
    gfx::GLStateManager::instance()->clearToInvalid();
    gfx::GLFunctions::install(mPrevious);
}
