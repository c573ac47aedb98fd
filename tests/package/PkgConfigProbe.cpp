// Built with nothing but the flags pkg-config gives for orbis-uiframework: the
// libraries it links must be the ones the headers describe, and they must find
// the assets installed beside them.
#include "FrameworkInfo.h"
#include "OrbisUIFrameworkVersion.h"
#include "StorageUtils.h"

#include <QDir>
#include <QFileInfo>
#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: probe PREFIX\n");
        return 2;
    }
    if (FrameworkInfo::version() != QLatin1String(ORBIS_FRAMEWORK_VERSION)) {
        std::fprintf(stderr, "library version %s, headers %s\n", qPrintable(FrameworkInfo::version()),
                     ORBIS_FRAMEWORK_VERSION);
        return 1;
    }
    qunsetenv("ORBIS_ASSETS");
    const QString expected =
        QFileInfo(
            QDir(QString::fromLocal8Bit(argv[1])).filePath(QStringLiteral("share/OrbisUIFramework/assets")))
            .canonicalFilePath();
    const QString found = QFileInfo(StorageUtils::assetsFolder()).canonicalFilePath();
    if (expected.isEmpty() || found != expected) {
        std::fprintf(stderr, "assets folder %s, expected %s\n", qPrintable(StorageUtils::assetsFolder()),
                     qPrintable(expected));
        return 1;
    }
    return 0;
}
