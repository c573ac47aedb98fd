#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QtGlobal>

namespace gfx {

/// The one vertex layout of the engine: position, texture coordinates, and the
/// colour of the programs that take theirs per vertex (8 bits a channel, not
/// premultiplied: the shader premultiplies as it would a uniform colour). Items of
/// different colours can so share one draw.
struct ORBIS_UI_EXPORT Vertex
{
    float x;
    float y;
    float u;
    float v;
    quint8 r = 0;
    quint8 g = 0;
    quint8 b = 0;
    quint8 a = 0;
};

} // namespace gfx
