#include "GLDrawCounter.h"

#include <GL/gl.h>
#include <cstring>
#include <dlfcn.h>

namespace {
using Function = void (*)();
using Resolver = Function (*)(const GLubyte*);
using DrawArrays = void (*)(GLenum, GLint, GLsizei);
using DrawElements = void (*)(GLenum, GLsizei, GLenum, const void*);

int gDraws = 0;
DrawArrays gDrawArrays = nullptr;
DrawElements gDrawElements = nullptr;

void countedDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    ++gDraws;
    gDrawArrays(mode, first, count);
}

void countedDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices)
{
    ++gDraws;
    gDrawElements(mode, count, type, indices);
}
} // namespace

int GLDrawCounter::draws()
{
    return gDraws;
}

void GLDrawCounter::reset()
{
    gDraws = 0;
}

// Takes precedence over the GL library's own (the program exports its symbols).
extern "C" Function glXGetProcAddress(const GLubyte* name)
{
    static const auto real = reinterpret_cast<Resolver>(dlsym(RTLD_NEXT, "glXGetProcAddress"));
    if (!real)
        return nullptr;
    const Function function = real(name);
    const char* text = reinterpret_cast<const char*>(name);
    if (function && std::strcmp(text, "glDrawArrays") == 0) {
        gDrawArrays = reinterpret_cast<DrawArrays>(function);
        return reinterpret_cast<Function>(countedDrawArrays);
    }
    if (function && std::strcmp(text, "glDrawElements") == 0) {
        gDrawElements = reinterpret_cast<DrawElements>(function);
        return reinterpret_cast<Function>(countedDrawElements);
    }
    return function;
}
