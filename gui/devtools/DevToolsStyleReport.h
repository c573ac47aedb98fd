#pragma once

#include "OrbisUIFrameworkExport.h"

#include "Style.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPair>
#include <QVector>

class DisplayView;

// What the developer tools show about one view beside the tree: its computed
// style (frame, opacity, flex properties and the style's attributes), the named
// styles it was built from, and its box model in screen coordinates.
class ORBIS_UI_INTERNAL_EXPORT DevToolsStyleReport
{
public:
    using Property = QPair<QString, QString>;

    // Name/value entries: "display", "position", the frame, "opacity", the flex
    // binding's properties as "css-..." for flex views, then the style's attributes.
    static QVector<Property> computedStyle(DisplayView* view);
    // The result of CSS.getMatchedStylesForNode: the style string's own "Key:Value"
    // parts as the inline style, one rule per named style in the order they apply,
    // and for flex views a last rule "CssLayout" with the flex binding's values under
    // the standard property names (css-flex-direction as flex-direction, ...).
    static QJsonObject matchedStyles(DisplayView* view);
    // The result of DOM.getBoxModel.
    static QJsonObject boxModel(DisplayView* view);
    // The attributes a style data defines, by key, in attribute order.
    static QVector<Property> styleAttributes(const Style::StyleData* data);

    static QJsonArray toCssProperties(const QVector<Property>& properties);
};
