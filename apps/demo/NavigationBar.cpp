#include "NavigationBar.h"

#include <control/Button.h>

NavigationBar::NavigationBar(DisplayView* parent, const QStringList& screens, const QStringList& titles)
    : Panel(parent, "navigation", QStringLiteral("Nav/Bar")), mScreens(screens)
{
    // Made first, so that the buttons draw over it. It slides by itself, outside
    // the bar's flex flow, from one button's frame to another's.
    mIndicator = new Panel(this, "indicator");
    mIndicator->disableCssLayout();
    mIndicator->setStyle(Style(QStringLiteral("Nav/Indicator")));
    for (int i = 0; i < screens.size(); ++i) {
        auto* button = new Button(this, screens[i].toLatin1().constData(), titles.value(i),
                                  QStringLiteral("Nav/Button"));
        connect(button, &Button::clicked, this, &NavigationBar::buttonClicked);
        mButtons << button;
    }
}

Button* NavigationBar::button(const QString& screen) const
{
    return mButtons.value(mScreens.indexOf(screen));
}

void NavigationBar::select(const QString& screen, bool animated)
{
    if (!mScreens.contains(screen) || screen == mSelected)
        return;
    mSelected = screen;
    for (int i = 0; i < mButtons.size(); ++i)
        mButtons[i]->setStyle(Style(mScreens[i] == screen ? QStringLiteral("Nav/Button; Nav/Selected")
                                                          : QStringLiteral("Nav/Button")));
    placeIndicator(animated);
}

void NavigationBar::placeIndicator(bool animated)
{
    const Button* chosen = button(mSelected);
    if (!chosen || chosen->width() <= 0)
        return;
    const QRect target = chosen->rect();
    if (target == mIndicatorTarget)
        return;
    // The first placement (and one after a resize) jumps: there is nothing to slide from.
    const bool slide = animated && mIndicatorTarget.isValid() && mIndicatorTarget.size() == target.size();
    mIndicatorTarget = target;
    mIndicator->resizeTo(target.width(), target.height());
    mIndicator->moveTo(target.x(), target.y(), slide ? kSlideSeconds : 0, InterpolatedValue::EaseOutQuad);
}

void NavigationBar::tick()
{
    Panel::tick();
    // The buttons' frames come from the flex pass: follow them when they change.
    placeIndicator(false);
}

void NavigationBar::buttonClicked(Button* button)
{
    const QString screen = mScreens.value(mButtons.indexOf(button));
    if (!screen.isEmpty())
        emit screenChosen(screen);
}
