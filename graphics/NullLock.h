#pragma once

namespace gfx {

// A lock for containers confined to one thread.
struct NullLock
{
    void lock() {}
    void unlock() {}
};

} // namespace gfx
