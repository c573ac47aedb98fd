#pragma once

#include "native/MapCRS.h"

#include <memory>

// Owns a CRS and installs it as the default for its lifetime, restoring the
// previous default afterwards.
class ScopedDefaultCRS
{
public:
    explicit ScopedDefaultCRS(NativeMaps::MapCRS* crs);
    ~ScopedDefaultCRS();
    ScopedDefaultCRS(const ScopedDefaultCRS&) = delete;
    ScopedDefaultCRS& operator=(const ScopedDefaultCRS&) = delete;

    NativeMaps::MapCRS* crs() const { return mCRS.get(); }

private:
    std::unique_ptr<NativeMaps::MapCRS> mCRS;
    NativeMaps::MapCRS* mPrevious;
};
