#pragma once

#include "OrbisUIFrameworkExport.h"

namespace gfx {

/// The one vertex layout of the engine: position, then texture coordinates.
struct ORBIS_UI_EXPORT Vertex
{
    float x;
    float y;
    float u;
    float v;
};

} // namespace gfx
