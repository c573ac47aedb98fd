#pragma once

#include "OrbisUIFrameworkExport.h"

namespace gfx {

/// A lock for containers confined to one thread.
struct ORBIS_UI_EXPORT NullLock
{
    void lock() {}
    void unlock() {}
};

} // namespace gfx
