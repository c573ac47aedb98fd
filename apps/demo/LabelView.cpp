#include "LabelView.h"

#include <Graphics.h>

LabelView::LabelView(DisplayView* parent, const char* name, const QString& text, int pixelSize,
                     const QColor& color, Qt::Alignment alignment)
    : DisplayView(parent, name), mText(text), mColor(color), mAlignment(alignment)
{
    mFont.setFamily(QStringLiteral("DejaVu Sans"));
    mFont.setPixelSize(pixelSize);
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
