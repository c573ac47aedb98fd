#pragma once

#include <QString>
#include <QtGlobal>

// What the runner asks of the application on screen: where it is, and whether it
// has come to rest there (for pictures of each screen).
class DemoContent
{
public:
    virtual ~DemoContent() = default;
    // The screen being shown ("home", "settings/display", ...).
    virtual QString screenName() const = 0;
    // How long the screen has been at rest (no transition running), in
    // milliseconds of the framework clock; -1 while it moves.
    virtual qint64 settledForMs() const = 0;
    bool isSettled() const { return settledForMs() >= 0; }
};
