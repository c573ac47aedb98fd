#pragma once

#include "OrbisUIFrameworkExport.h"

#include "Style.h"

#include <QPointer>
#include <QSet>
#include <QSharedData>

// The parsed attributes of one normalized style string, or of one named style.
// Registered with the StyleManager and shared by every Style handle built from the
// same text; the reference count lives in QSharedData. A style also holds a
// reference on each of its prerequisites, so that what it was built from outlives it.
class ORBIS_UI_INTERNAL_EXPORT Style::StyleData : public QSharedData
{
public:
    StyleData() = default;
    ~StyleData();
    StyleData(const StyleData&) = delete;
    StyleData& operator=(const StyleData&) = delete;

    // An anonymous style string: records it and registers its named parts.
    void initSpec(const QString& styleText);
    // A named style, (re)defined by styleText; an empty styleText only records the name, so
    // that a style can be referenced before any file defines it.
    void initAlias(const QString& name, const QString& styleText);

    // Rebuilds the attributes from the styleText (or, for a named style, from its
    // defining style string). Prerequisites must have been evaluated first.
    void evaluate();
    void parsePrereqs();
    void clearAttributes();
    void setAttribute(const QString& name, const QVariant& value);
    void setAttribute(StyleAttribute attr, const QVariant& value);
    void overrideWith(const StyleData* other);
    void addPrereq(StyleData* prereq);
    void removePrereq(StyleData* prereq);
    void dispatchChangedEvent();
    void logCycle(StyleData* other);

    void addListener(QObject* listener);
    void removeListener(QObject* listener);
    int listenerCount() const;
    // Nothing but the registry refers to this style: no handle, listener or
    // style built on it.
    bool isUnused() const { return ref.loadRelaxed() == 1 && listenerCount() == 0; }

    const QString& styleText() const { return mSpec; }
    const QString& name() const { return mName; }
    const QSet<StyleData*>& prerequisites() const { return mPrerequisites; }
    // A named style that no configuration entry has defined yet.
    bool isPlaceholder() const { return !mName.isEmpty() && mPrerequisites.isEmpty(); }
    // The style string that defines a named style (empty otherwise).
    QString definingSpec() const;

    const QHash<StyleAttribute, QVariant>& values() const { return mValues; }
    const QHash<StyleAttribute, ::Padding>& paddings() const { return mPaddings; }
    const QHash<StyleAttribute, QFont>& fonts() const { return mFonts; }
    const QHash<StyleAttribute, QPoint>& points() const { return mPoints; }
    const QHash<StyleAttribute, QList<int>>& intLists() const { return mIntLists; }
    const QHash<StyleAttribute, QList<double>>& realLists() const { return mRealLists; }

private:
    void evaluateKeyValue(const QString& part);
    void evaluateNamedPart(const QString& name);
    QString displayName() const;

    QHash<StyleAttribute, QVariant> mValues;
    QHash<StyleAttribute, ::Padding> mPaddings;
    QHash<StyleAttribute, QFont> mFonts;
    QHash<StyleAttribute, QPoint> mPoints;
    QHash<StyleAttribute, QList<int>> mIntLists;
    QHash<StyleAttribute, QList<double>> mRealLists;
    QString mSpec;
    QString mName;
    QSet<StyleData*> mPrerequisites;
    // Guarded, so that a listener destroyed without unregistering is skipped.
    QList<QPointer<QObject>> mListeners;
};
