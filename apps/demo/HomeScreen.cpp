#include "HomeScreen.h"

#include "MapCard.h"
#include "VehicleData.h"

#include <DisplayImage.h>
#include <control/Button.h>
#include <control/Label.h>
#include <control/Panel.h>
#include <control/ProgressBar.h>
#include <control/ProgressRing.h>

namespace {
QString minutes(int seconds)
{
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QVariant read(DataValue& value)
{
    DataValue::ConditionalLocker lock(value);
    return value.value();
}
} // namespace

HomeScreen::HomeScreen(DisplayView* parent) : Screen(parent, "home", QStringLiteral("Demo/Page"))
{
    buildMedia(box(this, "main", "Home/Main"));
    DisplayView* side = box(this, "side", "Home/Side");
    buildEnergy(side);
    mMapCard = new MapCard(side);
    connect(mMapCard, &MapCard::opened, this, &HomeScreen::mapRequested);
}

void HomeScreen::buildMedia(DisplayView* parent)
{
    auto* card = new Panel(parent, "media", QStringLiteral("Home/Media"));
    DisplayView* top = box(card, "top", "Home/MediaTop");
    mCover = box(top, "cover", "Home/Cover");
    DisplayView* text = box(top, "text", "Home/MediaText");
    new Label(text, "nowPlaying", tr("NOW PLAYING"), QStringLiteral("Home/NowPlaying"));
    mTitle = new Label(text, "title", QString(), QStringLiteral("Home/Title"));
    mTitle->setValueSource(VehicleData::mediaTitle);
    mTitle->refreshValue();
    auto* artist = new Label(text, "artist", QString(), QStringLiteral("Home/Artist"));
    artist->setValueSource(VehicleData::mediaArtist);
    artist->refreshValue();

    box(card, "spacer", "Demo/Spacer");
    auto* next = new Panel(card, "next", QStringLiteral("Home/Next"));
    mNextCover = box(next, "cover", "Home/NextCover");
    DisplayView* nextText = box(next, "text", "Home/NextText");
    new Label(nextText, "caption", tr("UP NEXT"), QStringLiteral("Home/NextCaption"));
    auto* nextTitle = new Label(nextText, "title", QString(), QStringLiteral("Home/NextTitle"));
    nextTitle->setValueSource(VehicleData::mediaNextTitle);
    nextTitle->refreshValue();
    auto* nextArtist = new Label(nextText, "artist", QString(), QStringLiteral("Home/NextArtist"));
    nextArtist->setValueSource(VehicleData::mediaNextArtist);
    nextArtist->refreshValue();
    box(card, "spacer", "Demo/Spacer");
    mProgress = new ProgressBar(card, "progress", QStringLiteral("Home/Progress"));
    DisplayView* times = box(card, "times", "Home/Times");
    mElapsed = new Label(times, "elapsed", QString(), QStringLiteral("Home/Time"));
    mRemaining = new Label(times, "remaining", QString(), QStringLiteral("Home/TimeLeft"));

    DisplayView* controls = box(card, "controls", "Home/Controls");
    mPrevious =
        new Button(controls, "previous", QString(), QStringLiteral("Home/Skip; Image:icons/previous"));
    mPlay = new Button(controls, "play", QString(), QStringLiteral("Home/Play"));
    mNext = new Button(controls, "next", QString(), QStringLiteral("Home/Skip; Image:icons/next"));
    connect(mPrevious, &Button::clicked, this, &HomeScreen::skipClicked);
    connect(mNext, &Button::clicked, this, &HomeScreen::skipClicked);
    connect(mPlay, &Button::clicked, this, &HomeScreen::playClicked);

    dvConnect(VehicleData::mediaCover, SLOT(coverChanged(DataValue*)), true);
    dvConnect(VehicleData::mediaNextCover, SLOT(coverChanged(DataValue*)), true);
    dvConnect(VehicleData::mediaPosition, SLOT(positionChanged(DataValue*)), true);
    dvConnect(VehicleData::mediaDuration, SLOT(positionChanged(DataValue*)), true);
    dvConnect(VehicleData::mediaPlaying, SLOT(playingChanged(DataValue*)), true);
}

void HomeScreen::buildEnergy(DisplayView* parent)
{
    auto* card = new Panel(parent, "energy", QStringLiteral("Home/Energy"));
    mRing = new ProgressRing(card, "battery", QStringLiteral("Home/Ring"));
    mRing->setRange(0, 100);
    mRing->setValueSource(VehicleData::batteryPercent);
    DisplayView* text = box(card, "text", "Home/EnergyText");
    new Label(text, "caption", tr("BATTERY"), QStringLiteral("Home/NowPlaying"));
    auto* percent = new Label(text, "percent", QString(), QStringLiteral("Home/Percent"));
    percent->setValueFormat(QStringLiteral("%1 %"));
    percent->setValueSource(VehicleData::batteryPercent);
    percent->refreshValue();
    auto* range = new Label(text, "range", QString(), QStringLiteral("Home/Range"));
    range->setValueFormat(tr("%1 km range"));
    range->setValueSource(VehicleData::rangeKm);
    range->refreshValue();
    mPower = new Label(text, "power", QString(), QStringLiteral("Home/Power"));
    dvConnect(VehicleData::powerKw, SLOT(powerChanged(DataValue*)), true);
}

void HomeScreen::activate(bool active)
{
    Screen::activate(active);
    if (!active)
        return;
    // The ring fills up from empty each time the screen comes into view.
    mRing->setValue(mRing->minimum(), false);
    mRing->setValue(read(VehicleData::batteryPercent).toDouble(), true);
}

void HomeScreen::coverChanged(DataValue* value)
{
    const QString name = read(*value).toString();
    DisplayView* cover = value == &VehicleData::mediaNextCover ? mNextCover : mCover;
    cover->setBackground(name.isEmpty() ? DisplayImage() : DisplayImage(name));
}

void HomeScreen::positionChanged(DataValue*)
{
    const int position = read(VehicleData::mediaPosition).toInt();
    const int duration = qMax(1, read(VehicleData::mediaDuration).toInt());
    mProgress->setRange(0, duration);
    mProgress->setValue(position);
    mElapsed->setText(minutes(position));
    mRemaining->setText(QStringLiteral("-") + minutes(qMax(0, duration - position)));
}

void HomeScreen::playingChanged(DataValue* value)
{
    mPlay->setStyle(Style(read(*value).toBool() ? QStringLiteral("Home/Play; Image:icons/pause")
                                                : QStringLiteral("Home/Play; Image:icons/play")));
}

void HomeScreen::powerChanged(DataValue* value)
{
    const double kw = read(*value).toDouble();
    mPower->setText(kw < 0 ? tr("Recovering %1 kW").arg(-kw, 0, 'f', 1)
                           : tr("Using %1 kW").arg(kw, 0, 'f', 1));
}

void HomeScreen::playClicked()
{
    DataValue::EventLocker lock(VehicleData::mediaPlaying);
    VehicleData::mediaPlaying.setValue(!VehicleData::mediaPlaying.toBool());
}

void HomeScreen::skipClicked(Button* button)
{
    VehicleData::mediaSkipRequest.addValue(button == mNext ? 1 : -1);
}
