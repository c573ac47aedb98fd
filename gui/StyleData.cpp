#include "StyleData.h"

#include "FontManager.h"
#include "Logger.h"
#include "StyleManager.h"

#include <QMetaObject>

namespace {

static const char* const kLogSource = "gui/Style";

QVector<QStringRef> listItems(const QString& text)
{
    QVector<QStringRef> items = text.splitRef(QLatin1Char(','));
    for (QStringRef& item : items)
        item = item.trimmed();
    return items;
}

bool parsePadding(const QString& text, Padding& out)
{
    const QVector<QStringRef> items = listItems(text);
    QVector<int> v;
    v.reserve(items.size());
    for (const QStringRef& item : items)
        v.append(item.toInt(nullptr, 10));
    switch (v.size()) {
    case 1:
        out = Padding(v[0]);
        return true;
    case 2:
        out = Padding(v[0], v[1]);
        return true;
    case 4:
        out = Padding(v[0], v[1], v[2], v[3]);
        return true;
    default:
        ORBIS_FAIL(QStringLiteral("Invalid padding definition %1").arg(text));
        return false;
    }
}

bool parsePoint(const QString& text, QPoint& out)
{
    const QVector<QStringRef> values = listItems(text);
    if (!ORBIS_ASSERT(values.count() == 2, QStringLiteral("Must have two items in a point '%1'").arg(text)))
        return false;
    out = QPoint(values[0].toInt(nullptr, 10), values[1].toInt(nullptr, 10));
    return true;
}

QList<int> parseIntList(const QString& text)
{
    QList<int> list;
    for (const QStringRef& item : listItems(text))
        list.append(item.toInt(nullptr, 10));
    return list;
}

QList<double> parseRealList(const QString& text)
{
    QList<double> list;
    for (const QStringRef& item : listItems(text))
        list.append(item.toDouble());
    return list;
}

QList<int> parseAlignmentList(Style::StyleAttribute attr, const QString& text)
{
    QList<int> list;
    for (const QStringRef& item : listItems(text))
        list.append(Style::getEnum(attr, item.toString()));
    return list;
}

// Later values replace earlier ones key by key; an empty target just shares the
// other's hash, which keeps copying a named style cheap.
template <typename Hash> void mergeInto(Hash& target, const Hash& source)
{
    if (target.isEmpty())
        target = source;
    else if (!source.isEmpty())
        target.insert(source);
}

} // namespace

Style::StyleData::~StyleData()
{
    const QList<StyleData*> prerequisites = mPrerequisites.values();
    for (StyleData* prereq : prerequisites)
        removePrereq(prereq);
}

void Style::StyleData::initSpec(const QString& styleText)
{
    mSpec = styleText;
    parsePrereqs();
}

void Style::StyleData::initAlias(const QString& name, const QString& styleText)
{
    mName = name;
    if (styleText.isEmpty() || styleText == definingSpec())
        return;
    StyleManager* manager = StyleManager::instance();
    if (!manager)
        return;
    const QList<StyleData*> old = mPrerequisites.values();
    for (StyleData* prereq : old)
        removePrereq(prereq);
    clearAttributes();
    addPrereq(manager->lookupOrCreateSpec(styleText, false));
    manager->markChanged(this);
}

QString Style::StyleData::definingSpec() const
{
    if (mName.isEmpty() || mPrerequisites.isEmpty())
        return QString();
    return (*mPrerequisites.cbegin())->styleText();
}

void Style::StyleData::parsePrereqs()
{
    if (!mPrerequisites.isEmpty() || mSpec.isEmpty())
        return;
    StyleManager* manager = StyleManager::instance();
    if (!manager)
        return;
    for (const QStringRef& raw : mSpec.splitRef(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringRef part = raw.trimmed();
        if (!part.isEmpty() && !part.contains(QLatin1Char(':')))
            addPrereq(manager->lookupOrCreateAlias(part.toString(), QString()));
    }
}

void Style::StyleData::evaluate()
{
    clearAttributes();
    if (mSpec.isEmpty()) {
        for (const StyleData* prereq : qAsConst(mPrerequisites))
            overrideWith(prereq);
        return;
    }
    for (const QStringRef& raw : mSpec.splitRef(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString part = raw.trimmed().toString();
        if (part.isEmpty())
            continue;
        if (part.contains(QLatin1Char(':')))
            evaluateKeyValue(part);
        else
            evaluateNamedPart(part);
    }
}

void Style::StyleData::evaluateKeyValue(const QString& part)
{
    const QStringList keyValue = part.split(QLatin1Char(':'));
    if (!ORBIS_ASSERT(keyValue.count() == 2, QStringLiteral("Must have key:value '%1'").arg(part)))
        return;
    const QString key = keyValue.at(0).trimmed();
    const QString value = keyValue.at(1).trimmed();
    if (!ORBIS_ASSERT(key.length() > 0 && value.length() > 0,
                      QStringLiteral("Key and value must have length '%1'").arg(part)))
        return;
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    setAttribute(key, isNumber ? QVariant(number) : QVariant(value));
}

void Style::StyleData::evaluateNamedPart(const QString& name)
{
    StyleManager* manager = StyleManager::instance();
    const StyleData* named = manager ? manager->lookupStyle(name) : nullptr;
    if (!named) {
        ORBIS_FAIL(QStringLiteral("Missing style '%1'").arg(name));
        return;
    }
    overrideWith(named);
}

void Style::StyleData::clearAttributes()
{
    mValues.clear();
    mPaddings.clear();
    mFonts.clear();
    mPoints.clear();
    mIntLists.clear();
    mRealLists.clear();
}

void Style::StyleData::setAttribute(const QString& name, const QVariant& value)
{
    const auto it = sAttributeMap.constFind(name);
    if (it == sAttributeMap.cend()) {
        Logger::logAssert("sAttributeMap.contains(name)", QStringLiteral("Unknown attribute '%1'!").arg(name),
                          kLogSource, __LINE__);
        return;
    }
    setAttribute(it.value(), value);
}

void Style::StyleData::setAttribute(StyleAttribute attr, const QVariant& value)
{
    const auto typeIt = sAttributeTypes.constFind(attr);
    if (typeIt == sAttributeTypes.cend()) {
        ORBIS_FAIL(QStringLiteral("Unknown attribute '%1'!").arg(int(attr)));
        return;
    }
    const StyleAttributeType type = typeIt.value();
    // Readers convert these; only the other kinds are parsed from text.
    if (type == BoolType || type == IntType || type == RealType || type == StringType) {
        mValues.insert(attr, value);
        return;
    }
    const QString text = value.toString();
    switch (type) {
    case EnumType9:
    case EnumType:
    case EnumType11:
    case EnumType12: {
        int flags = 0;
        if (Style::enumValueOf(attr, text, flags))
            mValues.insert(attr, flags);
        return;
    }
    case PaddingType: {
        ::Padding padding;
        if (parsePadding(text, padding))
            mPaddings.insert(attr, padding);
        return;
    }
    case PointType: {
        QPoint point;
        if (parsePoint(text, point))
            mPoints.insert(attr, point);
        return;
    }
    case IntListType:
        mIntLists.insert(attr, parseIntList(text));
        return;
    case RealListType:
        mRealLists.insert(attr, parseRealList(text));
        return;
    case AlignmentListType:
        mIntLists.insert(attr, parseAlignmentList(attr, text));
        return;
    case FontType: {
        QFont font;
        const FontManager* fonts = FontManager::instance();
        if (!fonts || !fonts->findFont(text, font)) {
            ORBIS_FAIL(QStringLiteral("Unknown font name %1").arg(text));
            return;
        }
        mFonts.insert(attr, font);
        return;
    }
    default:
        return;
    }
}

void Style::StyleData::overrideWith(const StyleData* other)
{
    if (!other || other == this)
        return;
    mergeInto(mValues, other->mValues);
    mergeInto(mPaddings, other->mPaddings);
    mergeInto(mFonts, other->mFonts);
    mergeInto(mPoints, other->mPoints);
    mergeInto(mIntLists, other->mIntLists);
    mergeInto(mRealLists, other->mRealLists);
}

void Style::StyleData::addPrereq(StyleData* prereq)
{
    if (!prereq || prereq == this || mPrerequisites.contains(prereq))
        return;
    mPrerequisites.insert(prereq);
    prereq->ref.ref();
}

void Style::StyleData::removePrereq(StyleData* prereq)
{
    if (mPrerequisites.remove(prereq) && !prereq->ref.deref())
        delete prereq;
}

void Style::StyleData::addListener(QObject* listener)
{
    if (!listener)
        return;
    for (const QPointer<QObject>& known : qAsConst(mListeners)) {
        if (known == listener)
            return;
    }
    mListeners.append(listener);
}

void Style::StyleData::removeListener(QObject* listener)
{
    mListeners.removeAll(listener);
}

int Style::StyleData::listenerCount() const
{
    int count = 0;
    for (const QPointer<QObject>& listener : mListeners)
        count += listener ? 1 : 0;
    return count;
}

void Style::StyleData::dispatchChangedEvent()
{
    if (mListeners.isEmpty())
        return;
    mListeners.removeAll(nullptr);
    // A listener may unregister (or register others) from restyled().
    const QList<QPointer<QObject>> listeners = mListeners;
    for (const QPointer<QObject>& listener : listeners) {
        if (listener)
            QMetaObject::invokeMethod(listener.data(), "restyled", Qt::DirectConnection);
    }
}

void Style::StyleData::logCycle(StyleData* other)
{
    ORBIS_FAIL(QStringLiteral("Cycle detected between %1 and %2")
                   .arg(displayName(), other ? other->displayName() : QString()));
}

QString Style::StyleData::displayName() const
{
    return mName.isEmpty() ? mSpec : mName;
}
