#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

class StyleManager;

// A private assets folder (ORBIS_ASSETS) and a fresh StyleManager for one test;
// both are undone when it goes out of scope.
class ScopedStyleAssets
{
public:
    ScopedStyleAssets();
    ~ScopedStyleAssets();
    ScopedStyleAssets(const ScopedStyleAssets&) = delete;
    ScopedStyleAssets& operator=(const ScopedStyleAssets&) = delete;

    QString path(const QString& fileName) const;
    // Writes the file through a rename, the way editors save. The settings reader
    // caches files by size and time stamp: rewrites within a test should change
    // the size.
    void write(const QString& fileName, const QByteArray& content) const;
    void remove(const QString& fileName) const;
    StyleManager* manager() const;

private:
    QTemporaryDir mDir;
    bool mHadAssets;
    QByteArray mPreviousAssets;
};
