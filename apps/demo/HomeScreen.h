#pragma once

#include "Screen.h"

class Button;
class DataValue;
class Label;
class MapCard;
class ProgressBar;
class ProgressRing;

// The first screen: what is playing, the battery, and a glance at the map.
class HomeScreen : public Screen
{
    Q_OBJECT

public:
    explicit HomeScreen(DisplayView* parent);

    MapCard* mapCard() const { return mMapCard; }
    Label* titleLabel() const { return mTitle; }
    ProgressRing* batteryRing() const { return mRing; }
    void activate(bool active) override;

signals:
    void mapRequested();

private slots:
    void coverChanged(DataValue* value);
    void positionChanged(DataValue* value);
    void playingChanged(DataValue* value);
    void powerChanged(DataValue* value);
    void playClicked();
    void skipClicked(Button* button);

private:
    void buildMedia(DisplayView* parent);
    void buildEnergy(DisplayView* parent);

    DisplayView* mCover = nullptr;
    DisplayView* mNextCover = nullptr;
    Label* mTitle = nullptr;
    ProgressBar* mProgress = nullptr;
    Label* mElapsed = nullptr;
    Label* mRemaining = nullptr;
    Button* mPrevious = nullptr;
    Button* mPlay = nullptr;
    Button* mNext = nullptr;
    ProgressRing* mRing = nullptr;
    Label* mPower = nullptr;
    MapCard* mMapCard = nullptr;
};
