#include "Screen.h"

#include <Style.h>

Screen::Screen(DisplayView* parent, const char* name, const QString& styleText)
    : DisplayView(parent, name), mName(QString::fromLatin1(name))
{
    setStyle(Style(styleText));
}

QString Screen::screenName() const
{
    return mName;
}

void Screen::activate(bool) {}

DisplayView* Screen::box(DisplayView* parent, const char* name, const char* style)
{
    auto* view = new DisplayView(parent, name);
    view->setStyle(Style(QLatin1String(style)));
    return view;
}
