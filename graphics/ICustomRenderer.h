#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QRect>

namespace gfx {

struct RenderState;

/// Code that draws with GL itself (map renderers, external application windows),
/// called in its place in a display list. It may change any GL state: the state
/// cache is invalidated after it ran.
class ORBIS_UI_EXPORT ICustomRenderer
{
public:
    virtual ~ICustomRenderer() = default;
    /// `target` is in the pass's item coordinates, `source` in the renderer's own.
    /// The scissor box is set to `state.clipRect`, the part of the surface that the
    /// renderer may draw; one that sets its own scissor box keeps within it.
    virtual void render(const RenderState& state, const QRect& target, const QRect& source) = 0;
};

} // namespace gfx
