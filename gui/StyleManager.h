#pragma once

#include "OrbisUIFrameworkExport.h"
#include "Singleton.h"
#include "Style.h"

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVector>

class QFileSystemWatcher;
class QSettings;

/// The process-wide registry of styles: one StyleData per normalized style string
/// and per named style. Named styles come from the INI style files of the assets
/// folder; on a development vehicle the files are watched and every style that
/// depends on an edited one restyles live.
///
/// A StyleData stays registered for the life of the process, so that views with the
/// same style string always share one. Applications that build style strings at
/// run time (a colour per value, say) can set "ui/release_unused_styles": the
/// registry then lets go of styles that nothing holds any more (no Style handle, no
/// listener, no named style built on them) in sweeps, started by a new style string
/// once the registry has doubled since the last sweep; so a text that is dropped
/// and asked for again soon is usually still parsed. Defined named styles always
/// stay.
class ORBIS_UI_EXPORT StyleManager : public QObject
{
    Q_OBJECT

public:
    static StyleManager* instance();
    ~StyleManager() override;

    /// Reads the development-vehicle flag and loads the style files.
    void initialize();

    /// The named style, or nullptr when no configuration entry defines it.
    Style::StyleData* lookupStyle(const QString& name) const;
    /// styleText must be normalized (Style::normalizedSpec).
    Style::StyleData* lookupOrCreateSpec(const QString& styleText, bool evaluate);
    Style::StyleData* lookupOrCreateAlias(const QString& name, const QString& styleText);
    /// The style registered under a normalized style string, or nullptr.
    Style::StyleData* registeredSpec(const QString& styleText) const;
    /// A style string as code writes it: normalized once per distinct text.
    Style::StyleData* lookupOrCreateWritten(const QString& text);
    /// A named style got a new definition: outside a load, it and everything built
    /// on it are re-evaluated and restyled at once.
    void markChanged(Style::StyleData* data);

    void loadConfiguration();
    void loadConfigurationFile(const QString& path);
    void loadConfigurationGroup(QSettings& settings);
    void parseConfigurationEntry(const QSettings& settings, const QString& key);

    static bool allowRuntimeStyling();
    /// Adds "<base>-<name>.conf" files, read before the common and base files when
    /// present; their definitions win over later files without being reported.
    static void registerOptionalStyleOverrideName(const QString& name);
    static void unregisterOptionalStyleOverrideName(const QString& name);
    /// The style files of the assets folder, in reading order.
    static QStringList configurationFiles();

    QStringList watchedFiles() const;
    int styleCount() const { return mCreationOrder.size(); }
    /// Unregisters every style that nothing holds; returns how many went. Does
    /// nothing while styles are being loaded or restyled. Callable whatever
    /// "ui/release_unused_styles" says.
    int releaseUnusedStyles();

public Q_SLOTS:
    void styleFileChanged(const QString& path);

private:
    friend class Singleton<StyleManager>;
    StyleManager();

    struct StyleFile
    {
        QString path;
        bool isOverride;
    };
    static QVector<StyleFile> styleFiles();
    Style::StyleData* registerData(QHash<QString, TExplicitlySharedDataPointer<Style::StyleData>>& hash,
                                   const QString& key);
    QSet<Style::StyleData*> dependentsOf(Style::StyleData* data) const;
    void watch(const QStringList& files);
    void dispatchChanged(const QList<Style::StyleData*>& evaluated, const QSet<Style::StyleData*>* only);

    QHash<QString, TExplicitlySharedDataPointer<Style::StyleData>> mStyles;
    QHash<QString, TExplicitlySharedDataPointer<Style::StyleData>> mNamedStyles;
    /// Texts given to Style(styleText), normalized or not, so that repeated lookups of
    /// the same text cost one hash lookup.
    QHash<QString, Style::StyleData*> mWrittenSpecs;
    /// Every registered style, oldest first: the order of a full re-evaluation.
    QVector<Style::StyleData*> mCreationOrder;
    /// The registry size at which a new style string starts a sweep.
    int mSweepAt;
    /// Listeners are running: the styles being notified are held only by raw pointers.
    int mDispatching = 0;
    /// Names defined during the current load, and whether an override file did it.
    QHash<QString, bool> mDefinedThisLoad;
    bool mLoading = false;
    bool mReadingOverride = false;
    QFileSystemWatcher* mWatcher = nullptr;
};
