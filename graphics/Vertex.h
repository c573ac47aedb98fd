#pragma once

namespace gfx {

// The one vertex layout of the engine: position, then texture coordinates.
struct Vertex
{
    float x;
    float y;
    float u;
    float v;
};

} // namespace gfx
