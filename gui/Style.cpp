#include "Style.h"

#include "DataValues.h"
#include "Logger.h"
#include "StyleData.h"
#include "StyleManager.h"

#include <QLocale>
#include <cmath>
#include <limits>

namespace {

static const char* const kLogSource = "gui/Style";

// Numbers in style strings are stored as reals; integer reads round them and
// keep out-of-range and non-finite values from overflowing.
int toInt(const QVariant& value)
{
    if (value.userType() != QMetaType::Double)
        return value.toInt();
    const double number = value.toDouble();
    if (!std::isfinite(number))
        return 0;
    if (number >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (number <= double(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return qRound(number);
}

struct LanguageSetting
{
    int language = 0;
    bool factoryMode = false;
};

LanguageSetting currentLanguage()
{
    LanguageSetting setting;
    {
        DataValue::ConditionalLocker lock(GUI_factoryMode);
        setting.factoryMode = GUI_factoryMode.toBool();
    }
    DataValue::ConditionalLocker lock(GUI_language);
    setting.language = GUI_language.toInt();
    return setting;
}

// The framework's own language codes beyond the QLocale range (regional variants).
constexpr int kChineseVariantA = 1000;
constexpr int kChineseVariantB = 1003;
constexpr int kFrenchVariant = 1004;

} // namespace

Style::Style() = default;
Style::Style(const Style& other) = default;
Style& Style::operator=(const Style& other) = default;
Style::~Style() = default;

Style::Style(StyleData* data) : mData(data) {}

Style::Style(const QString& styleText)
{
    if (styleText.isEmpty())
        return;
    if (StyleManager* manager = StyleManager::instance())
        mData = manager->lookupOrCreateWritten(styleText);
}

QString Style::styleText() const
{
    return mData ? mData->styleText() : QString();
}

QString Style::name() const
{
    return mData ? mData->name() : QString();
}

bool Style::isNormalized(const QString& styleText)
{
    const QChar* chars = styleText.constData();
    const int size = styleText.size();
    for (int start = 0; start < size;) {
        int end = styleText.indexOf(QLatin1Char(';'), start);
        if (end < 0)
            end = size;
        if (end == start || chars[start].isSpace() || chars[end - 1].isSpace() || end == size - 1)
            return false;
        start = end + 1;
    }
    return true;
}

QString Style::normalizedSpec(const QString& styleText)
{
    // Most style strings are written normalized; hand those back without copying.
    if (isNormalized(styleText))
        return styleText;

    const QChar* chars = styleText.constData();
    const int size = styleText.size();
    const QChar separator(QLatin1Char(';'));
    QString result;
    result.reserve(size);
    for (int start = 0; start < size;) {
        int end = start;
        while (end < size && chars[end] != separator)
            ++end;
        int first = start;
        int last = end;
        while (first < last && chars[first].isSpace())
            ++first;
        while (last > first && chars[last - 1].isSpace())
            --last;
        if (last > first) {
            if (!result.isEmpty())
                result += separator;
            result.append(chars + first, last - first);
        }
        start = end + 1;
    }
    return result;
}

QVariant Style::valueOf(const StyleData* data, StyleAttribute attr)
{
    return data ? data->values().value(attr) : QVariant();
}

bool Style::isDefined(StyleAttribute attr) const
{
    if (!mData)
        return false;
    switch (attributeType(attr)) {
    case PaddingType:
        return mData->paddings().contains(attr);
    case FontType:
        return mData->fonts().contains(attr);
    case PointType:
        return mData->points().contains(attr);
    case IntListType:
    case AlignmentListType:
        return mData->intLists().contains(attr);
    case RealListType:
        return mData->realLists().contains(attr);
    default:
        return mData->values().contains(attr);
    }
}

int Style::intValue(StyleAttribute attr) const
{
    return toInt(valueOf(data(), attr));
}

double Style::doubleValue(StyleAttribute attr) const
{
    return valueOf(data(), attr).toDouble();
}

bool Style::boolValue(StyleAttribute attr) const
{
    return valueOf(data(), attr).toBool();
}

QString Style::stringValue(StyleAttribute attr) const
{
    return valueOf(data(), attr).toString();
}

int Style::enumValue(StyleAttribute attr) const
{
    return toInt(valueOf(data(), attr));
}

QPoint Style::pointValue(StyleAttribute attr) const
{
    return mData ? mData->points().value(attr) : QPoint();
}

Padding Style::padding(StyleAttribute attr) const
{
    return mData ? mData->paddings().value(attr) : ::Padding();
}

QFont Style::font(StyleAttribute attr) const
{
    QFont result = mData ? mData->fonts().value(attr) : QFont();
    bool flag = false;
    if (boolValue(Bold, flag))
        result.setBold(flag);
    if (boolValue(Italic, flag))
        result.setItalic(flag);
    return result;
}

Qt::Alignment Style::alignment(StyleAttribute attr) const
{
    return Qt::Alignment(enumValue(attr));
}

QList<Qt::Alignment> Style::alignments(StyleAttribute attr) const
{
    QList<Qt::Alignment> result;
    for (int flags : intListValue(attr))
        result.append(Qt::Alignment(flags));
    return result;
}

int Style::textFlag(StyleAttribute attr) const
{
    return enumValue(attr);
}

Qt::TextElideMode Style::elide(StyleAttribute attr) const
{
    int mode = Qt::ElideNone;
    enumValue(attr, mode);
    return Qt::TextElideMode(mode);
}

QList<int> Style::intListValue(StyleAttribute attr) const
{
    return mData ? mData->intLists().value(attr) : QList<int>();
}

QList<double> Style::doubleListValue(StyleAttribute attr) const
{
    return mData ? mData->realLists().value(attr) : QList<double>();
}

bool Style::intValue(StyleAttribute attr, int& out) const
{
    if (!isDefined(attr))
        return false;
    out = intValue(attr);
    return true;
}

bool Style::doubleValue(StyleAttribute attr, double& out) const
{
    if (!isDefined(attr))
        return false;
    out = doubleValue(attr);
    return true;
}

bool Style::boolValue(StyleAttribute attr, bool& out) const
{
    if (!isDefined(attr))
        return false;
    out = boolValue(attr);
    return true;
}

bool Style::stringValue(StyleAttribute attr, QString& out) const
{
    if (!isDefined(attr))
        return false;
    out = stringValue(attr);
    return true;
}

bool Style::enumValue(StyleAttribute attr, int& out) const
{
    if (!isDefined(attr))
        return false;
    out = enumValue(attr);
    return true;
}

int Style::requiredGeometry(StyleAttribute attr, const char* message) const
{
    int value = 0;
    if (intValue(attr, value))
        return value;
    ORBIS_FAIL(QString::fromLatin1(message));
    return 1;
}

int Style::width() const
{
    return requiredGeometry(Width, "undefined width");
}

int Style::height() const
{
    return requiredGeometry(Height, "undefined height");
}

int Style::x() const
{
    return requiredGeometry(X, "undefined x");
}

int Style::y() const
{
    return requiredGeometry(Y, "undefined y");
}

int Style::fontSize() const
{
    int size = 0;
    if (intValue(fontSizeAttributeforLanguage(), size) ||
        intValue(fallbackFontSizeAttributeForLanguage(), size))
        return size;
    return intValue(FontSize);
}

Style::StyleAttribute Style::fontSizeAttributeforLanguage()
{
    const LanguageSetting setting = currentLanguage();
    if (setting.factoryMode)
        return FontSize;
    switch (setting.language) {
    case QLocale::Chinese:
    case kChineseVariantA:
    case kChineseVariantB:
        return FontSizeChinese;
    case QLocale::Japanese:
        return FontSizeJapanese;
    case QLocale::Korean:
        return FontSizeKorean;
    case QLocale::German:
        return FontSizeGerman;
    case QLocale::Italian:
        return FontSizeItalian;
    case QLocale::Dutch:
        return FontSizeDutch;
    case QLocale::French:
    case kFrenchVariant:
        return FontSizeFrench;
    case QLocale::Spanish:
        return FontSizeSpanish;
    case QLocale::Swedish:
        return FontSizeSwedish;
    default:
        return FontSize;
    }
}

Style::StyleAttribute Style::fallbackFontSizeAttributeForLanguage()
{
    const LanguageSetting setting = currentLanguage();
    if (setting.factoryMode)
        return FontSize;
    switch (setting.language) {
    // The CJK languages share the Chinese size when they have none of their own.
    case QLocale::Chinese:
    case QLocale::Japanese:
    case QLocale::Korean:
    case kChineseVariantA:
    case kChineseVariantB:
        return FontSizeChinese;
    default:
        return FontSize;
    }
}

void Style::registerListener(QObject* listener) const
{
    if (mData)
        mData->addListener(listener);
}

void Style::unregisterListener(QObject* listener) const
{
    if (mData)
        mData->removeListener(listener);
}
