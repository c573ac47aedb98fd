#pragma once

#include "OrbisUIFrameworkExport.h"

#include "DisplayView.h"
#include "SkinColor.h"

/// A surface with rounded corners: the cards, bars and tiles of a screen. Its look
/// comes from the style: BackgroundColor, CornerRadius, StrokeColor and StrokeWidth
/// (an outline inside the edge). The shape is a nine-patch shared by every panel of
/// the same colours and radius, so a panel of any size draws as one texture. A
/// background image, when the style names one, is drawn over the shape.
class ORBIS_UI_EXPORT Panel : public DisplayView
{
    Q_OBJECT

public:
    explicit Panel(DisplayView* parent, const char* name = nullptr, const QString& styleText = QString());

    void setFill(const SkinColor& color);
    const SkinColor& fill() const { return mFill; }
    /// Negative radii count as 0.
    void setCornerRadius(int radius);
    int cornerRadius() const { return mRadius; }
    void setStroke(const SkinColor& color, int width);

    void setStyle(const Style& style) override;
    void draw(QPainter& painter) override;

protected:
    /// The panel's rounded shape over `rect` in `color`; the radius shrinks to half the
    /// shorter side where `rect` is smaller.
    void drawShape(QPainter& painter, const QRect& rect, const QColor& color) const;

private:
    int radiusFor(const QRect& rect) const;

    SkinColor mFill;
    SkinColor mStroke;
    int mRadius = 0;
    int mStrokeWidth = 0;
};
