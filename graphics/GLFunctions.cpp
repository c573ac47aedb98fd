#include "GLFunctions.h"

#include "ContextGLFunctions.h"

namespace gfx {

namespace {
ContextGLFunctions gContextFunctions;
GLFunctions* gInstalled = nullptr;
} // namespace

GLFunctions* GLFunctions::current()
{
    return gInstalled ? gInstalled : &gContextFunctions;
}

GLFunctions* GLFunctions::install(GLFunctions* functions)
{
    GLFunctions* previous = gInstalled;
    gInstalled = functions;
    return previous;
}

} // namespace gfx
