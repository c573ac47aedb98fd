#pragma once

#include <control/Panel.h>

class Label;

// The strip across the top of every screen: the time, the drive state, the
// outside temperature and the mobile signal.
class StatusBar : public Panel
{
    Q_OBJECT

public:
    explicit StatusBar(DisplayView* parent);

    Label* clock() const { return mClock; }
    Label* temperature() const { return mTemperature; }

private slots:
    void timeChanged(DataValue*);
    void driveChanged(DataValue*);
    void signalChanged(DataValue*);

private:
    Label* mClock;
    Label* mDrive;
    Label* mTemperature;
    QList<Panel*> mBars;
};
