#pragma once

#include <QString>

// Build facts of libOrbisUIFramework, for logs and the view inspector.
namespace FrameworkInfo {
QString version();
QString qtVersion();
} // namespace FrameworkInfo
