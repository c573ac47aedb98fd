#pragma once

#include <DisplayView.h>
#include <QColor>
#include <QFont>

// One line of text, elided to the view's width.
class LabelView : public DisplayView
{
    Q_OBJECT

public:
    LabelView(DisplayView* parent, const char* name, const QString& text, int pixelSize,
              const QColor& color = Qt::white, Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter);

    // Font, size and alignment from a named style of the style files.
    LabelView(DisplayView* parent, const char* name, const QString& text, const QString& style,
              const QColor& color = Qt::white);

    void setText(const QString& text);
    QString text() const { return mText; }
    void draw(QPainter& painter) override;

private:
    QString mText;
    QFont mFont;
    QColor mColor;
    Qt::Alignment mAlignment;
};
