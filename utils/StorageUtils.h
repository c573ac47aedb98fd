#pragma once

#include "OrbisUtilsExport.h"

#include <QString>

namespace StorageUtils {

/// The folder of style files and images: $ORBIS_ASSETS when set, else the installed
/// share/OrbisUIFramework/assets beside the library, else the source tree's assets/
/// folder. Never ends in a slash.
ORBIS_UTILS_EXPORT QString assetsFolder();
/// A file inside the assets folder.
ORBIS_UTILS_EXPORT QString assetPath(const QString& relative);

} // namespace StorageUtils
