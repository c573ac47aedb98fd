#include "ScopedStyleAssets.h"

#include "StyleManager.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

ScopedStyleAssets::ScopedStyleAssets()
    : mHadAssets(qEnvironmentVariableIsSet("ORBIS_ASSETS")), mPreviousAssets(qgetenv("ORBIS_ASSETS"))
{
    qputenv("ORBIS_ASSETS", QFile::encodeName(mDir.path()));
    Singleton<StyleManager>::reset();
}

ScopedStyleAssets::~ScopedStyleAssets()
{
    Singleton<StyleManager>::reset();
    if (mHadAssets)
        qputenv("ORBIS_ASSETS", mPreviousAssets);
    else
        qunsetenv("ORBIS_ASSETS");
}

QString ScopedStyleAssets::path(const QString& fileName) const
{
    return QDir(mDir.path()).filePath(fileName);
}

void ScopedStyleAssets::write(const QString& fileName, const QByteArray& content) const
{
    QSaveFile file(path(fileName));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(content);
        file.commit();
    }
}

void ScopedStyleAssets::remove(const QString& fileName) const
{
    QFile::remove(path(fileName));
}

StyleManager* ScopedStyleAssets::manager() const
{
    return StyleManager::instance();
}
