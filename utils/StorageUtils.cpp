#include "StorageUtils.h"

#include <QDir>

namespace StorageUtils {

QString assetsFolder()
{
    QString folder = qEnvironmentVariable("ORBIS_ASSETS");
    if (folder.isEmpty())
        folder = QStringLiteral(ORBIS_SOURCE_DIR "/assets");
    return QDir::cleanPath(folder);
}

QString assetPath(const QString& relative)
{
    return QDir(assetsFolder()).filePath(relative);
}

} // namespace StorageUtils
