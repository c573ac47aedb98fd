#include "StyleManager.h"

#include "ConfigValue.h"
#include "DataValues.h"
#include "DependancyEvaluator.h"
#include "Logger.h"
#include "PerfLogger.h"
#include "SkinManager.h"
#include "StorageUtils.h"
#include "StyleData.h"
#include "StyleVariantConverter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSettings>
#include <QThread>
#include <atomic>

namespace {

static const char* const kLogSource = "gui/Style";

ConfigBoolValue gRuntimeStyling("ui/runtime_styling", false);
ConfigBoolValue gReleaseUnusedStyles("ui/release_unused_styles", false);

std::atomic<bool> gDevelopmentCar{false};

QStringList& overrideNames()
{
    static QStringList names;
    return names;
}

// Editors save by writing a new file and renaming it over the old one; the path
// can be missing for a moment in between.
constexpr unsigned long kReplacedFileWaitUs = 100000;

// Below this many styles the registry never sweeps: an application's own styles fit.
constexpr int kMinimumSweepSize = 4096;

// Unquoted INI values that contain commas come back as lists.
QString entryText(const QVariant& value)
{
    if (value.userType() == QMetaType::QStringList)
        return value.toStringList().join(QLatin1Char(','));
    return value.toString();
}

} // namespace

StyleManager* StyleManager::instance()
{
    return Singleton<StyleManager>::instance();
}

StyleManager::StyleManager() : mSweepAt(kMinimumSweepSize)
{
    gDevelopmentCar = false;
    Style::addAttributeTypes();
    qRegisterMetaType<Style>("Style");
    VariantConverter::registerConverter(new StyleVariantConverter);
}

StyleManager::~StyleManager()
{
    // Handles may outlive the registry; their data must not point at styles that
    // die with it.
    for (Style::StyleData* data : qAsConst(mCreationOrder)) {
        const QList<Style::StyleData*> prerequisites = data->prerequisites().values();
        for (Style::StyleData* prereq : prerequisites)
            data->removePrereq(prereq);
    }
}

void StyleManager::initialize()
{
    // The skin of the current day mode is one of the files to read.
    SkinManager::instance();
    {
        DataValue::ConditionalLocker lock(GUI_isDevelopmentCar);
        gDevelopmentCar = GUI_isDevelopmentCar.toBool();
    }
    loadConfiguration();
}

bool StyleManager::allowRuntimeStyling()
{
    return gDevelopmentCar.load() || gRuntimeStyling.value();
}

void StyleManager::registerOptionalStyleOverrideName(const QString& name)
{
    if (!name.isEmpty() && !overrideNames().contains(name))
        overrideNames().append(name);
}

void StyleManager::unregisterOptionalStyleOverrideName(const QString& name)
{
    overrideNames().removeAll(name);
}

Style::StyleData* StyleManager::lookupStyle(const QString& name) const
{
    Style::StyleData* data = mNamedStyles.value(name).data();
    return data && !data->isPlaceholder() ? data : nullptr;
}

Style::StyleData*
StyleManager::registerData(QHash<QString, TExplicitlySharedDataPointer<Style::StyleData>>& hash,
                           const QString& key)
{
    auto* data = new Style::StyleData;
    hash.insert(key, TExplicitlySharedDataPointer<Style::StyleData>(data));
    mCreationOrder.append(data);
    return data;
}

Style::StyleData* StyleManager::lookupOrCreateSpec(const QString& styleText, bool evaluate)
{
    if (styleText.isEmpty())
        return nullptr;
    const auto known = mStyles.constFind(styleText);
    if (known != mStyles.cend())
        return known->data();
    // Registered before its named parts are resolved, which may come back here.
    Style::StyleData* data = registerData(mStyles, styleText);
    data->initSpec(styleText);
    if (evaluate)
        data->evaluate();
    return data;
}

Style::StyleData* StyleManager::registeredSpec(const QString& styleText) const
{
    const auto known = mStyles.constFind(styleText);
    return known != mStyles.cend() ? known->data() : nullptr;
}

Style::StyleData* StyleManager::lookupOrCreateWritten(const QString& text)
{
    const auto known = mWrittenSpecs.constFind(text);
    if (known != mWrittenSpecs.cend())
        return known.value();
    // Nothing is under construction here, so every unused style can go.
    if (mCreationOrder.size() >= mSweepAt && gReleaseUnusedStyles.value())
        releaseUnusedStyles();
    Style::StyleData* data = lookupOrCreateSpec(Style::normalizedSpec(text), true);
    mWrittenSpecs.insert(text, data);
    return data;
}

Style::StyleData* StyleManager::lookupOrCreateAlias(const QString& name, const QString& styleText)
{
    if (name.isEmpty())
        return nullptr;
    Style::StyleData* data = mNamedStyles.value(name).data();
    if (!data)
        data = registerData(mNamedStyles, name);
    data->initAlias(name, styleText);
    return data;
}

QSet<Style::StyleData*> StyleManager::dependentsOf(Style::StyleData* data) const
{
    QHash<Style::StyleData*, QList<Style::StyleData*>> users;
    for (Style::StyleData* candidate : mCreationOrder) {
        for (Style::StyleData* prereq : candidate->prerequisites())
            users[prereq].append(candidate);
    }
    QSet<Style::StyleData*> reached{data};
    QList<Style::StyleData*> pending{data};
    while (!pending.isEmpty()) {
        for (Style::StyleData* user : users.value(pending.takeLast())) {
            if (!reached.contains(user)) {
                reached.insert(user);
                pending.append(user);
            }
        }
    }
    return reached;
}

void StyleManager::markChanged(Style::StyleData* data)
{
    if (!data || mLoading)
        return;
    const QSet<Style::StyleData*> affected = dependentsOf(data);
    DependancyEvaluator<Style::StyleData> evaluator;
    for (Style::StyleData* candidate : qAsConst(mCreationOrder)) {
        if (affected.contains(candidate))
            evaluator.evaluate(candidate);
    }
    dispatchChanged(evaluator.finished(), &affected);
}

void StyleManager::dispatchChanged(const QList<Style::StyleData*>& evaluated,
                                   const QSet<Style::StyleData*>* only)
{
    ++mDispatching;
    for (Style::StyleData* data : evaluated) {
        if (!only || only->contains(data))
            data->dispatchChangedEvent();
    }
    --mDispatching;
}

int StyleManager::releaseUnusedStyles()
{
    if (mLoading || mDispatching > 0)
        return 0;
    QSet<Style::StyleData*> unused;
    // Anonymous styles first: dropping them is what leaves the placeholders they
    // named unused. Defined named styles stay.
    for (Style::StyleData* data : qAsConst(mCreationOrder)) {
        if (data->name().isEmpty() && data->isUnused()) {
            unused.insert(data);
            const QList<Style::StyleData*> prerequisites = data->prerequisites().values();
            for (Style::StyleData* prereq : prerequisites)
                data->removePrereq(prereq);
        }
    }
    for (Style::StyleData* data : qAsConst(mCreationOrder)) {
        if (data->isPlaceholder() && data->isUnused())
            unused.insert(data);
    }
    if (!unused.isEmpty()) {
        for (auto it = mWrittenSpecs.begin(); it != mWrittenSpecs.end();)
            it = unused.contains(it.value()) ? mWrittenSpecs.erase(it) : it + 1;
        QVector<Style::StyleData*> kept;
        kept.reserve(mCreationOrder.size() - unused.size());
        for (Style::StyleData* data : qAsConst(mCreationOrder)) {
            if (!unused.contains(data))
                kept.append(data);
        }
        mCreationOrder = kept;
        // The registry's reference is the last one: removing it deletes the style.
        for (Style::StyleData* data : qAsConst(unused)) {
            const QString name = data->name();
            if (name.isEmpty())
                mStyles.remove(QString(data->styleText()));
            else
                mNamedStyles.remove(name);
        }
    }
    mSweepAt = qMax(kMinimumSweepSize, 2 * mCreationOrder.size());
    return unused.size();
}

QVector<StyleManager::StyleFile> StyleManager::styleFiles()
{
    const QDir folder(StorageUtils::assetsFolder());
    QVector<StyleFile> files;
    for (const char* baseName : {"styles", "assets"}) {
        const QString base = QString::fromLatin1(baseName);
        for (const QString& name : qAsConst(overrideNames())) {
            const QString path = folder.filePath(base + '-' + name + ".conf");
            if (QFileInfo::exists(path))
                files.append({path, true});
        }
        files.append({folder.filePath(base + "-common.conf"), false});
        files.append({folder.filePath(base + ".conf"), false});
    }
    return files;
}

QStringList StyleManager::configurationFiles()
{
    QStringList paths;
    for (const StyleFile& file : styleFiles())
        paths.append(file.path);
    return paths;
}

void StyleManager::loadConfiguration()
{
    PerfLogger::Span span(QStringLiteral("loadConfiguration"));
    const QVector<StyleFile> files = styleFiles();
    QStringList loaded;
    mLoading = true;
    mDefinedThisLoad.clear();
    for (const StyleFile& file : files) {
        mReadingOverride = file.isOverride;
        loadConfigurationFile(file.path);
        if (QFileInfo(file.path).isFile())
            loaded.append(file.path);
    }
    mReadingOverride = false;
    mLoading = false;

    DependancyEvaluator<Style::StyleData> evaluator;
    const QVector<Style::StyleData*> all = mCreationOrder;
    for (Style::StyleData* data : all)
        evaluator.evaluate(data);
    dispatchChanged(evaluator.finished(), nullptr);

    if (allowRuntimeStyling())
        watch(loaded);
}

void StyleManager::loadConfigurationFile(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        ORBIS_WARN(QStringLiteral("Style file %1 is missing").arg(path));
        return;
    }
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        ORBIS_WARN(QStringLiteral("Style file %1 is not readable").arg(path));
        return;
    }
    // The INI reader turns "@Type(...)" values, also when spelled with escapes,
    // into deserialized binary data, which damaged bytes can make it abort on.
    // Style strings need neither.
    const QByteArray content = file.readAll();
    if (content.contains('@') || content.contains('\\')) {
        ORBIS_WARN(QStringLiteral("Style file %1 contains escapes or serialized values").arg(path));
        return;
    }
    file.close();
    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    // What the INI reader could make of a damaged file is still used: a typo made
    // while restyling live should not take every other style with it.
    if (settings.status() != QSettings::NoError)
        ORBIS_WARN(QStringLiteral("Style file %1 is not a valid INI file").arg(path));
    loadConfigurationGroup(settings);
}

void StyleManager::loadConfigurationGroup(QSettings& settings)
{
    // Depth-first, keys of a group before its subgroups. Kept off the call stack:
    // a key with many slashes nests that many groups.
    QStringList pending{QString()};
    while (!pending.isEmpty()) {
        const QString group = pending.takeLast();
        if (!group.isEmpty())
            settings.beginGroup(group);
        for (const QString& key : settings.childKeys())
            parseConfigurationEntry(settings, key);
        const QStringList children = settings.childGroups();
        if (!group.isEmpty())
            settings.endGroup();
        // Damaged files can yield a nameless group, which would be entered forever.
        for (auto it = children.crbegin(); it != children.crend(); ++it) {
            if (!it->isEmpty())
                pending.append(group.isEmpty() ? *it : group + '/' + *it);
        }
    }
}

void StyleManager::parseConfigurationEntry(const QSettings& settings, const QString& key)
{
    const QString group = settings.group();
    const QString name = group.isEmpty() ? key : group + '/' + key;
    const QVariant value = key.isEmpty() ? QVariant() : settings.value(key);
    if (!value.isValid()) {
        ORBIS_FAIL(QStringLiteral("Missing entry ") + name);
        return;
    }
    const QString styleText = Style::normalizedSpec(entryText(value));
    if (styleText.isEmpty()) {
        ORBIS_FAIL(QStringLiteral("Empty entry ") + name);
        return;
    }
    const auto defined = mDefinedThisLoad.constFind(name);
    if (defined != mDefinedThisLoad.cend()) {
        if (!defined.value())
            ORBIS_FAIL(QStringLiteral("Duplicate entry ") + name);
        return;
    }
    mDefinedThisLoad.insert(name, mReadingOverride);
    lookupOrCreateAlias(name, styleText);
}

void StyleManager::watch(const QStringList& files)
{
    if (!mWatcher) {
        mWatcher = new QFileSystemWatcher(this);
        connect(mWatcher, SIGNAL(fileChanged(QString)), this, SLOT(styleFileChanged(QString)));
    }
    const QStringList watched = mWatcher->files();
    for (const QString& file : files) {
        if (!watched.contains(file))
            mWatcher->addPath(file);
    }
}

QStringList StyleManager::watchedFiles() const
{
    return mWatcher ? mWatcher->files() : QStringList();
}

void StyleManager::styleFileChanged(const QString& path)
{
    ORBIS_INFO(QStringLiteral("Style file %1 change detected").arg(path));
    if (!QFileInfo::exists(path))
        QThread::usleep(kReplacedFileWaitUs);
    // A replaced file is a new inode that the watcher no longer follows.
    if (mWatcher) {
        mWatcher->removePath(path);
        if (QFileInfo::exists(path))
            mWatcher->addPath(path);
    }
    loadConfiguration();
}
