#include "FrameworkInfo.h"

#include "OrbisUIFrameworkVersion.h"

namespace FrameworkInfo {

QString version()
{
    return QStringLiteral(ORBIS_FRAMEWORK_VERSION);
}

QString qtVersion()
{
    return QString::fromLatin1(qVersion());
}

} // namespace FrameworkInfo
