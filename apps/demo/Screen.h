#pragma once

#include <DisplayView.h>

// One screen of the centre display, shown in the content area between the status
// bar and the navigation bar. A screen may have pages of its own ("settings/units").
class Screen : public DisplayView
{
    Q_OBJECT

public:
    Screen(DisplayView* parent, const char* name, const QString& styleText);

    // "home", or "settings/units" on a sub-page.
    virtual QString screenName() const;
    // The screen comes into view or leaves it.
    virtual void activate(bool active);
    // Stops everything that moves by itself, so that idle frames draw nothing.
    virtual void freeze() {}

protected:
    // A plain view of the screen's layout, styled by a named style.
    static DisplayView* box(DisplayView* parent, const char* name, const char* style);

    const QString mName;

signals:
    // The screen went to another of its pages.
    void pageChanged(Screen* screen);
};
