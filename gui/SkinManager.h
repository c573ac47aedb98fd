#pragma once

#include "OrbisUIFrameworkExport.h"

#include "Singleton.h"

#include <QObject>
#include <QString>

/// The day and night looks of the screen. Each skin is a style override file of the
/// assets folder ("styles-day.conf", "styles-night.conf"): it redefines named styles
/// and the skin colours of its "[Skin]" group. When GUI_dayMode changes, the manager
/// makes the matching file the active override, reloads the style files (so that
/// every styled view restyles) and emits skinChanged, on which each display repaints
/// everything.
class ORBIS_UI_EXPORT SkinManager : public QObject
{
    Q_OBJECT

public:
    static SkinManager* instance();

    static QString dayName() { return QStringLiteral("day"); }
    static QString nightName() { return QStringLiteral("night"); }

    /// "day" or "night".
    const QString& currentSkin() const { return mSkin; }
    bool isDay() const { return mSkin == dayName(); }
    /// Reloads the styles only when the skin changes.
    void setDayMode(bool day);

signals:
    void skinChanged();

private slots:
    void dayModeChanged();

private:
    friend class Singleton<SkinManager>;
    SkinManager();

    QString mSkin;
};
