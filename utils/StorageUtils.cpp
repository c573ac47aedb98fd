#include "StorageUtils.h"

#include <QDir>
#include <QFileInfo>
#include <dlfcn.h>

namespace StorageUtils {

namespace {

// An installed library keeps its assets at a fixed place relative to itself; a
// library in the build tree has none there and reads the source tree's.
QString defaultAssetsFolder()
{
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&assetsFolder), &info) && info.dli_fname) {
        const QDir libraryDir = QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absoluteDir();
        const QString installed = libraryDir.filePath(QStringLiteral(ORBIS_ASSETS_FROM_LIBDIR));
        if (QFileInfo(installed).isDir())
            return installed;
    }
    return QStringLiteral(ORBIS_SOURCE_DIR "/assets");
}

} // namespace

QString assetsFolder()
{
    QString folder = qEnvironmentVariable("ORBIS_ASSETS");
    if (folder.isEmpty()) {
        static const QString fallback = defaultAssetsFolder();
        folder = fallback;
    }
    return QDir::cleanPath(folder);
}

QString assetPath(const QString& relative)
{
    return QDir(assetsFolder()).filePath(relative);
}

} // namespace StorageUtils
