#include "DevToolsStyleReport.h"

#include "CssLayout.h"
#include "DisplayDevice.h"
#include "StyleData.h"
#include "StyleManager.h"

#include <QFont>
#include <QHash>
#include <QStringList>
#include <cmath>

namespace {

QString px(double value)
{
    return QString::number(value, 'g', 10) + QStringLiteral("px");
}

// css-layout leaves unset values undefined (NaN).
QString length(float value)
{
    return std::isnan(value) ? QStringLiteral("auto") : px(value);
}

QString flexDirectionName(css_flex_direction_t value)
{
    switch (value) {
    case CSS_FLEX_DIRECTION_COLUMN:
        return QStringLiteral("column");
    case CSS_FLEX_DIRECTION_COLUMN_REVERSE:
        return QStringLiteral("column-reverse");
    case CSS_FLEX_DIRECTION_ROW:
        return QStringLiteral("row");
    case CSS_FLEX_DIRECTION_ROW_REVERSE:
        return QStringLiteral("row-reverse");
    }
    return QString::number(value);
}

QString justifyName(css_justify_t value)
{
    switch (value) {
    case CSS_JUSTIFY_FLEX_START:
        return QStringLiteral("flex-start");
    case CSS_JUSTIFY_CENTER:
        return QStringLiteral("center");
    case CSS_JUSTIFY_FLEX_END:
        return QStringLiteral("flex-end");
    case CSS_JUSTIFY_SPACE_BETWEEN:
        return QStringLiteral("space-between");
    case CSS_JUSTIFY_SPACE_AROUND:
        return QStringLiteral("space-around");
    }
    return QString::number(value);
}

QString alignName(css_align_t value)
{
    switch (value) {
    case CSS_ALIGN_AUTO:
        return QStringLiteral("auto");
    case CSS_ALIGN_FLEX_START:
        return QStringLiteral("flex-start");
    case CSS_ALIGN_CENTER:
        return QStringLiteral("center");
    case CSS_ALIGN_FLEX_END:
        return QStringLiteral("flex-end");
    case CSS_ALIGN_STRETCH:
        return QStringLiteral("stretch");
    }
    return QString::number(value);
}

QString directionName(css_direction_t value)
{
    switch (value) {
    case CSS_DIRECTION_INHERIT:
        return QStringLiteral("inherit");
    case CSS_DIRECTION_LTR:
        return QStringLiteral("ltr");
    case CSS_DIRECTION_RTL:
        return QStringLiteral("rtl");
    }
    return QString::number(value);
}

const char* const kEdgeNames[] = {"left", "top", "right", "bottom", "start", "end"};

// Start and end only when set: they override left and right, which is rare.
void addEdges(QVector<DevToolsStyleReport::Property>& out, const char* prefix, DisplayView* view,
              float (DisplayView::*edge)(css_position_t) const)
{
    for (int i = CSS_LEFT; i < CSS_POSITION_COUNT; ++i) {
        const float value = (view->*edge)(css_position_t(i));
        if (i >= CSS_START && std::isnan(value))
            continue;
        out.append({QStringLiteral("%1-%2").arg(QLatin1String(prefix), QLatin1String(kEdgeNames[i])),
                    length(value)});
    }
}

void addFlexProperties(QVector<DevToolsStyleReport::Property>& out, DisplayView* view)
{
    const QSizeF size = view->cssSize();
    const QSizeF minSize = view->cssMinSize();
    const QSizeF maxSize = view->cssMaxSize();
    out.append({QStringLiteral("css-width"), length(float(size.width()))});
    out.append({QStringLiteral("css-height"), length(float(size.height()))});
    out.append({QStringLiteral("css-min-width"), length(float(minSize.width()))});
    out.append({QStringLiteral("css-min-height"), length(float(minSize.height()))});
    out.append({QStringLiteral("css-max-width"), length(float(maxSize.width()))});
    out.append({QStringLiteral("css-max-height"), length(float(maxSize.height()))});
    out.append({QStringLiteral("css-flex"), QString::number(view->cssFlex(), 'g', 10)});
    out.append({QStringLiteral("css-flex-direction"), flexDirectionName(view->cssFlexDirection())});
    out.append({QStringLiteral("css-flex-wrap"),
                view->cssFlexWrap() == CSS_WRAP ? QStringLiteral("wrap") : QStringLiteral("nowrap")});
    out.append({QStringLiteral("css-justify-content"), justifyName(view->cssJustifyContent())});
    out.append({QStringLiteral("css-align-content"), alignName(view->cssAlignContent())});
    out.append({QStringLiteral("css-align-items"), alignName(view->cssAlignItems())});
    out.append({QStringLiteral("css-align-self"), alignName(view->cssAlignSelf())});
    out.append({QStringLiteral("css-direction"), directionName(view->cssDirection())});
    out.append({QStringLiteral("css-position-type"), view->cssPositionType() == CSS_POSITION_ABSOLUTE
                                                         ? QStringLiteral("absolute")
                                                         : QStringLiteral("relative")});
    addEdges(out, "css-position", view, &DisplayView::cssPosition);
    addEdges(out, "css-margin", view, &DisplayView::cssMargin);
    addEdges(out, "css-padding", view, &DisplayView::cssPadding);
    addEdges(out, "css-border", view, &DisplayView::cssBorder);
}

// The flex binding's "css-..." entry under the name the tools know for it.
QString standardName(const QString& cssName)
{
    static const QHash<QString, QString> renamed = {
        {QStringLiteral("css-position-type"), QStringLiteral("position")},
        {QStringLiteral("css-position-left"), QStringLiteral("left")},
        {QStringLiteral("css-position-top"), QStringLiteral("top")},
        {QStringLiteral("css-position-right"), QStringLiteral("right")},
        {QStringLiteral("css-position-bottom"), QStringLiteral("bottom")},
        {QStringLiteral("css-position-start"), QStringLiteral("inset-inline-start")},
        {QStringLiteral("css-position-end"), QStringLiteral("inset-inline-end")},
        {QStringLiteral("css-margin-start"), QStringLiteral("margin-inline-start")},
        {QStringLiteral("css-margin-end"), QStringLiteral("margin-inline-end")},
        {QStringLiteral("css-padding-start"), QStringLiteral("padding-inline-start")},
        {QStringLiteral("css-padding-end"), QStringLiteral("padding-inline-end")},
        {QStringLiteral("css-border-start"), QStringLiteral("border-inline-start-width")},
        {QStringLiteral("css-border-end"), QStringLiteral("border-inline-end-width")}};
    const QString name = renamed.value(cssName);
    if (!name.isEmpty())
        return name;
    if (cssName.startsWith(QLatin1String("css-border-")))
        return cssName.mid(4) + QStringLiteral("-width");
    return cssName.mid(4);
}

template <typename T> QString joined(const QList<T>& values)
{
    QStringList parts;
    for (const T& value : values)
        parts << QString::number(value);
    return parts.join(QLatin1Char(','));
}

QJsonArray quad(const QRectF& r)
{
    return QJsonArray{r.left(), r.top(), r.right(), r.top(), r.right(), r.bottom(), r.left(), r.bottom()};
}

QRectF grown(const QRectF& rect, double top, double right, double bottom, double left)
{
    return rect.adjusted(-left, -top, right, bottom);
}

double orZero(float value)
{
    return std::isnan(value) ? 0.0 : double(value);
}

QJsonObject cssStyle(const QVector<DevToolsStyleReport::Property>& properties)
{
    return QJsonObject{{QStringLiteral("cssProperties"), DevToolsStyleReport::toCssProperties(properties)},
                       {QStringLiteral("shorthandEntries"), QJsonArray()}};
}

QJsonObject namedRule(const QString& selector, const QVector<DevToolsStyleReport::Property>& properties)
{
    const QJsonObject selectors{
        {QStringLiteral("selectors"), QJsonArray{QJsonObject{{QStringLiteral("text"), selector}}}},
        {QStringLiteral("text"), selector}};
    const QJsonObject rule{{QStringLiteral("selectorList"), selectors},
                           {QStringLiteral("origin"), QStringLiteral("regular")},
                           {QStringLiteral("style"), cssStyle(properties)}};
    return QJsonObject{{QStringLiteral("rule"), rule}, {QStringLiteral("matchingSelectors"), QJsonArray{0}}};
}

} // namespace

QJsonArray DevToolsStyleReport::toCssProperties(const QVector<Property>& properties)
{
    QJsonArray array;
    for (const Property& property : properties)
        array.append(QJsonObject{{QStringLiteral("name"), property.first},
                                 {QStringLiteral("value"), property.second}});
    return array;
}

QVector<DevToolsStyleReport::Property> DevToolsStyleReport::styleAttributes(const Style::StyleData* data)
{
    QVector<Property> out;
    if (!data)
        return out;
    for (int i = 0; i < Style::kAttributeCount; ++i) {
        const auto attr = Style::StyleAttribute(i);
        QString text;
        if (data->values().contains(attr)) {
            const QVariant value = data->values().value(attr);
            text = value.toString();
            if (text.isEmpty() && value.isValid() && value.type() != QVariant::String)
                text = QString::fromLatin1(value.typeName());
        } else if (data->paddings().contains(attr)) {
            const ::Padding p = data->paddings().value(attr);
            text = QStringLiteral("%1,%2,%3,%4").arg(p.top).arg(p.right).arg(p.bottom).arg(p.left);
        } else if (data->fonts().contains(attr)) {
            const QFont font = data->fonts().value(attr);
            text = font.family();
            if (font.pixelSize() > 0)
                text += QStringLiteral(" %1px").arg(font.pixelSize());
            if (font.bold())
                text += QStringLiteral(" bold");
        } else if (data->points().contains(attr)) {
            const QPoint p = data->points().value(attr);
            text = QStringLiteral("%1,%2").arg(p.x()).arg(p.y());
        } else if (data->intLists().contains(attr)) {
            text = joined(data->intLists().value(attr));
        } else if (data->realLists().contains(attr)) {
            text = joined(data->realLists().value(attr));
        } else {
            continue;
        }
        out.append({Style::attributeKey(attr), text});
    }
    return out;
}

QVector<DevToolsStyleReport::Property> DevToolsStyleReport::computedStyle(DisplayView* view)
{
    QVector<Property> out;
    const bool flex = view->usesCssLayout();
    out.append({QStringLiteral("display"), !view->visibleFlag() ? QStringLiteral("none")
                                           : flex               ? QStringLiteral("flex")
                                                                : QStringLiteral("block")});
    // A view outside a flex flow places itself in its parent.
    const bool inFlow = flex && view->cssPositionType() == CSS_POSITION_RELATIVE;
    out.append(
        {QStringLiteral("position"), inFlow ? QStringLiteral("relative") : QStringLiteral("absolute")});
    out.append({QStringLiteral("left"), px(view->x())});
    out.append({QStringLiteral("top"), px(view->y())});
    out.append({QStringLiteral("width"), px(view->width())});
    out.append({QStringLiteral("height"), px(view->height())});
    out.append({QStringLiteral("opacity"), QString::number(view->alpha(), 'g', 6)});
    out.append({QStringLiteral("visibility"),
                view->visibleFlag() ? QStringLiteral("visible") : QStringLiteral("hidden")});
    if (flex)
        addFlexProperties(out, view);
    out += styleAttributes(view->style().data());
    return out;
}

QJsonObject DevToolsStyleReport::matchedStyles(DisplayView* view)
{
    QVector<Property> inlineProperties;
    QJsonArray rules;
    const QStringList parts = view->style().styleText().split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString& rawPart : parts) {
        const QString part = rawPart.trimmed();
        const int colon = part.indexOf(QLatin1Char(':'));
        if (colon >= 0) {
            inlineProperties.append({part.left(colon).trimmed(), part.mid(colon + 1).trimmed()});
            continue;
        }
        if (part.isEmpty())
            continue;
        const Style::StyleData* named = StyleManager::instance()->lookupStyle(part);
        const QJsonObject selectors{
            {QStringLiteral("selectors"), QJsonArray{QJsonObject{{QStringLiteral("text"), part}}}},
            {QStringLiteral("text"), part}};
        const QJsonObject rule{{QStringLiteral("selectorList"), selectors},
                               {QStringLiteral("origin"), QStringLiteral("regular")},
                               {QStringLiteral("style"), cssStyle(styleAttributes(named))}};
        rules.append(QJsonObject{{QStringLiteral("rule"), rule},
                                 {QStringLiteral("matchingSelectors"), QJsonArray{0}}});
    }
    // What the flex binding holds (from the style and from direct calls) applies last.
    if (view->usesCssLayout()) {
        QVector<Property> flex;
        addFlexProperties(flex, view);
        for (Property& property : flex)
            property.first = standardName(property.first);
        rules.append(namedRule(QStringLiteral("CssLayout"), flex));
    }
    return QJsonObject{{QStringLiteral("inlineStyle"), cssStyle(inlineProperties)},
                       {QStringLiteral("matchedCSSRules"), rules},
                       {QStringLiteral("pseudoElements"), QJsonArray()},
                       {QStringLiteral("inherited"), QJsonArray()},
                       {QStringLiteral("cssKeyframesRules"), QJsonArray()}};
}

QJsonObject DevToolsStyleReport::boxModel(DisplayView* view)
{
    DisplayDevice* device = view->device();
    const QRectF border =
        (device && view != device) ? QRectF(view->relativePositionRect(device)) : QRectF(view->rect());
    QRectF content = border;
    QRectF margin = border;
    if (view->usesCssLayout()) {
        content = grown(border, -orZero(view->cssPadding(CSS_TOP)), -orZero(view->cssPadding(CSS_RIGHT)),
                        -orZero(view->cssPadding(CSS_BOTTOM)), -orZero(view->cssPadding(CSS_LEFT)));
        margin = grown(border, orZero(view->cssMargin(CSS_TOP)), orZero(view->cssMargin(CSS_RIGHT)),
                       orZero(view->cssMargin(CSS_BOTTOM)), orZero(view->cssMargin(CSS_LEFT)));
    } else {
        const ::Padding m = view->layoutMargin();
        margin = grown(border, m.top, m.right, m.bottom, m.left);
    }
    // Borders are stored but not drawn, so the padding box is the frame itself.
    const QJsonObject model{
        {QStringLiteral("content"), quad(content)}, {QStringLiteral("padding"), quad(border)},
        {QStringLiteral("border"), quad(border)},   {QStringLiteral("margin"), quad(margin)},
        {QStringLiteral("width"), view->width()},   {QStringLiteral("height"), view->height()}};
    return QJsonObject{{QStringLiteral("model"), model}};
}
