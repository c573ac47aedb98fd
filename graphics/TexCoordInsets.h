#pragma once

#include "OrbisUIFrameworkExport.h"

namespace gfx {

/// How far the sampled area lies inside the texture, per edge, in texture
/// coordinates (0 = the texture's own edge).
struct ORBIS_UI_EXPORT TexCoordInsets
{
    float left = 0;
    float top = 0;
    float right = 0;
    float bottom = 0;

    bool operator==(const TexCoordInsets& o) const
    {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
};

} // namespace gfx
