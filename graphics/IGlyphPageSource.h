#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QSize>
#include <qopengl.h>

namespace gfx {

// What the texture cache needs of the glyph cache, which owns the atlas pages.
class ORBIS_UI_INTERNAL_EXPORT IGlyphPageSource
{
public:
    struct PageInfo
    {
        QSize size;
        int depth = 1;
    };

    virtual ~IGlyphPageSource() = default;
    virtual PageInfo page(unsigned int page) const = 0;
    // The page's texture, with pending glyphs uploaded.
    virtual GLuint activePageTexture(unsigned int page) = 0;
};

} // namespace gfx
