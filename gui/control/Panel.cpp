#include "Panel.h"

#include "ControlShapes.h"
#include "DrawingContext.h"
#include "Skin.h"

Panel::Panel(DisplayView* parent, const char* name, const QString& styleText) : DisplayView(parent, name)
{
    if (!styleText.isEmpty())
        setStyle(Style(styleText));
}

void Panel::setFill(const SkinColor& color)
{
    if (color == mFill)
        return;
    mFill = color;
    update();
}

void Panel::setCornerRadius(int radius)
{
    radius = qMax(0, radius);
    if (radius == mRadius)
        return;
    mRadius = radius;
    update();
}

void Panel::setStroke(const SkinColor& color, int width)
{
    width = qMax(0, width);
    if (color == mStroke && width == mStrokeWidth)
        return;
    mStroke = color;
    mStrokeWidth = width;
    update();
}

void Panel::setStyle(const Style& style)
{
    DisplayView::setStyle(style);
    if (style.isNull())
        return;
    QString text;
    // The panel draws its own fill; the view's square one would show at the corners.
    if (style.stringValue(Style::BackgroundColor, text)) {
        setFill(Skin::parseColor(text));
        setBackgroundColor(SkinColor());
    }
    double radius = 0;
    if (style.doubleValue(Style::CornerRadius, radius))
        setCornerRadius(int(radius));
    int width = mStrokeWidth;
    style.intValue(Style::StrokeWidth, width);
    SkinColor stroke = mStroke;
    if (style.stringValue(Style::StrokeColor, text))
        stroke = Skin::parseColor(text);
    setStroke(stroke, width);
}

int Panel::radiusFor(const QRect& rect) const
{
    return qMin(mRadius, qMin(rect.width(), rect.height()) / 2);
}

void Panel::drawShape(QPainter& painter, const QRect& rect, const QColor& color) const
{
    if (!color.isValid() || rect.isEmpty())
        return;
    const int radius = radiusFor(rect);
    if (radius == 0) {
        DrawingContext(painter).fillRect(rect, color);
        return;
    }
    ControlShapes::roundedRect(radius, color).draw(painter, rect);
}

void Panel::draw(QPainter& painter)
{
    const QRect area(0, 0, width(), height());
    const QColor fill = mFill.color();
    const QColor stroke = mStrokeWidth > 0 ? mStroke.color() : QColor();
    if (stroke.isValid()) {
        ControlShapes::roundedRect(radiusFor(area), fill, stroke, mStrokeWidth).draw(painter, area);
    } else {
        drawShape(painter, area, fill);
    }
    DisplayView::draw(painter);
}
