#pragma once

#include <QString>

namespace StorageUtils {

// The folder of style files and images: $ORBIS_ASSETS when set, else the source
// tree's assets/ folder. Never ends in a slash.
QString assetsFolder();
// A file inside the assets folder.
QString assetPath(const QString& relative);

} // namespace StorageUtils
