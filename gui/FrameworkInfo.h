#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QString>

/// Build facts of libOrbisUIFramework, for logs and the view inspector.
namespace FrameworkInfo {
ORBIS_UI_EXPORT QString version();
ORBIS_UI_EXPORT QString qtVersion();
} // namespace FrameworkInfo
