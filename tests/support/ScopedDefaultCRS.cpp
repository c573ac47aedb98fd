#include "ScopedDefaultCRS.h"

ScopedDefaultCRS::ScopedDefaultCRS(NativeMaps::MapCRS* crs)
    : mCRS(crs), mPrevious(NativeMaps::MapCRS::defaultCRS())
{
    NativeMaps::MapCRS::setDefaultCRS(crs);
}

ScopedDefaultCRS::~ScopedDefaultCRS()
{
    NativeMaps::MapCRS::setDefaultCRS(mPrevious);
}
