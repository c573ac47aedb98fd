#pragma once

#include "OrbisUIFrameworkExport.h"

namespace gfx {

/// Names a fragment shader registered with ShaderCache::registerCustomShader; the
/// null key means the usage's own shader.
class ORBIS_UI_EXPORT CustomShaderKey
{
public:
    CustomShaderKey() = default;
    explicit CustomShaderKey(int id) : mId(id) {}

    bool isNull() const { return mId == 0; }
    int id() const { return mId; }
    bool operator==(const CustomShaderKey& o) const { return mId == o.mId; }
    bool operator!=(const CustomShaderKey& o) const { return mId != o.mId; }

private:
    int mId = 0;
};

} // namespace gfx
