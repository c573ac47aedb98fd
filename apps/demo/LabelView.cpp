#include "LabelView.h"

#include <Graphics.h>
#include <Style.h>

LabelView::LabelView(DisplayView* parent, const char* name, const QString& text, int pixelSize,
                     const QColor& color, Qt::Alignment alignment)
    : DisplayView(parent, name), mText(text), mColor(color), mAlignment(alignment)
{
    mFont.setFamily(QStringLiteral("DejaVu Sans"));
    mFont.setPixelSize(pixelSize);
}

LabelView::LabelView(DisplayView* parent, const char* name, const QString& text, const QString& style,
                     const QColor& color)
    : LabelView(parent, name, text, 24, color)
{
    const Style named(style);
    const QFont font = named.font();
    if (!font.family().isEmpty())
        mFont.setFamily(font.family());
    mFont.setBold(font.bold());
    mFont.setWeight(font.weight());
    if (named.fontSize() > 0)
        mFont.setPixelSize(named.fontSize());
    if (named.isDefined(Style::Alignment))
        mAlignment = named.alignment();
}

void LabelView::setText(const QString& text)
{
    if (text == mText)
        return;
    mText = text;
    update();
}

void LabelView::draw(QPainter& painter)
{
    painter.save();
    painter.setFont(mFont);
    Graphics::drawText(painter, QRect(0, 0, width(), height()), int(mAlignment), mText, mColor, true, false,
                       Qt::ElideRight);
    painter.restore();
}
