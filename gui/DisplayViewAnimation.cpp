#include "DisplayViewAnimation.h"

#include "DisplayView.h"

double DisplayViewAnimation::current(Property property) const
{
    switch (property) {
    case X:
        return mView->x();
    case Y:
        return mView->y();
    case Width:
        return mView->width();
    case Height:
        return mView->height();
    case Alpha:
        return mView->alpha();
    case Scale:
        return mView->scale();
    case Angle:
        return mView->angle();
    case Brightness:
        return mView->brightness();
    case PropertyCount:
        break;
    }
    return 0;
}

void DisplayViewAnimation::animate(Property property, double target, double duration,
                                   InterpolatedValue::EaseType ease, double delay)
{
    InterpolatedValue& value = mValues[property];
    if (!value.active())
        value.setValue(current(property));
    value.ease(target, duration, delay, ease, true);
}

void DisplayViewAnimation::queue(Property property, double target, double duration,
                                 InterpolatedValue::EaseType ease)
{
    InterpolatedValue& value = mValues[property];
    if (!value.active())
        value.setValue(current(property));
    value.ease(target, duration, 0, ease, false);
}

void DisplayViewAnimation::stop(Property property)
{
    mValues[property].stopUpdating(false);
}

bool DisplayViewAnimation::isRunning() const
{
    for (const InterpolatedValue& value : mValues) {
        if (value.active())
            return true;
    }
    return false;
}

bool DisplayViewAnimation::update()
{
    bool changed[PropertyCount];
    for (int i = 0; i < PropertyCount; ++i)
        changed[i] = mValues[i].active() && mValues[i].update(false);
    apply(changed);
    return isRunning();
}

void DisplayViewAnimation::finish()
{
    bool changed[PropertyCount];
    for (int i = 0; i < PropertyCount; ++i)
        changed[i] = mValues[i].active() && mValues[i].update(true);
    apply(changed);
}

void DisplayViewAnimation::apply(bool changed[PropertyCount])
{
    if (changed[X] || changed[Y]) {
        mView->applyPosition(changed[X] ? mValues[X].value() : mView->x(),
                             changed[Y] ? mValues[Y].value() : mView->y());
    }
    if (changed[Width] || changed[Height]) {
        mView->applySize(changed[Width] ? int(mValues[Width].value()) : mView->width(),
                         changed[Height] ? int(mValues[Height].value()) : mView->height());
    }
    if (changed[Alpha])
        mView->applyAlpha(mValues[Alpha].value());
    if (changed[Scale])
        mView->applyScale(mValues[Scale].value());
    if (changed[Angle])
        mView->applyAngle(mValues[Angle].value());
    if (changed[Brightness])
        mView->applyBrightness(float(mValues[Brightness].value()));
}
