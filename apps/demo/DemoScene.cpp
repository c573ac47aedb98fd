#include "DemoScene.h"

#include "ImageView.h"
#include "LabelView.h"
#include "PanelView.h"
#include "SpinnerView.h"

#include <DisplayDevice.h>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

namespace {
const QColor kBackground(16, 20, 28);
const QColor kBar(27, 33, 48);
const QColor kCard(34, 42, 58);
const QColor kAccent(62, 160, 255);
const QColor kCharge(80, 220, 120);
const QColor kDim(150, 160, 180);
const int kMargin = 24;
const int kBarHeight = 48;
} // namespace

DemoScene::DemoScene(DisplayDevice* device) : mDevice(device)
{
    const int width = device->width();
    const int height = device->height();
    mRoot = new PanelView(device->views(), "demo", kBackground);
    mRoot->resizeTo(width, height);
    buildStatusBar(width);
    const int top = kBarHeight + kMargin;
    const int cardHeight = height - top - kMargin;
    const int mediaWidth = (width - 3 * kMargin) * 3 / 5;
    buildMediaCard(QRect(kMargin, top, mediaWidth, cardHeight));
    buildChargingCard(QRect(2 * kMargin + mediaWidth, top, width - 3 * kMargin - mediaWidth, cardHeight));
    connect(&mSecondTimer, &QTimer::timeout, this, &DemoScene::secondPassed);
    mSecondTimer.start(1000);
}

void DemoScene::buildStatusBar(int width)
{
    auto* bar = new PanelView(mRoot, "statusBar", kBar);
    bar->resizeTo(width, kBarHeight);
    mClock = new LabelView(bar, "clock", QStringLiteral("12:34:00"), QStringLiteral("StatusBar/Clock"));
    mClock->moveTo(kMargin, 0);
    mClock->resizeTo(120, kBarHeight);
    auto* temperature = new LabelView(bar, "temperature", QStringLiteral("21 \u00b0C"),
                                      QStringLiteral("StatusBar/Temperature"));
    temperature->moveTo(width - kMargin - 96, 0);
    temperature->resizeTo(96, kBarHeight);
}

void DemoScene::buildMediaCard(const QRect& rect)
{
    auto* card = new PanelView(mRoot, "media", kCard, 16);
    card->moveTo(rect.x(), rect.y());
    card->resizeTo(rect.width(), rect.height());
    const int art = qMin(rect.height() - 2 * kMargin - 60, rect.width() / 2 - kMargin);
    auto* cover = new ImageView(card, "cover", coverArt(art));
    cover->moveTo(kMargin, kMargin);
    cover->resizeTo(art, art);
    const int textLeft = 2 * kMargin + art;
    const int textWidth = rect.width() - textLeft - kMargin;
    auto* title = new LabelView(card, "title", QStringLiteral("Night Drive"), QStringLiteral("TextTitle"));
    title->moveTo(textLeft, kMargin);
    title->resizeTo(textWidth, 40);
    auto* artist =
        new LabelView(card, "artist", QStringLiteral("The Coast Roads"), QStringLiteral("TextSmall"), kDim);
    artist->moveTo(textLeft, kMargin + 44);
    artist->resizeTo(textWidth, 28);

    const int trackTop = rect.height() - kMargin - 8;
    auto* track = new PanelView(card, "track", kBackground, 4);
    track->moveTo(kMargin, trackTop);
    track->resizeTo(rect.width() - 2 * kMargin, 8);
    mProgressWidth = track->width();
    mProgress = new PanelView(track, "progress", kAccent, 4);
    mProgress->resizeTo(8, 8);
    connect(mProgress, SIGNAL(animationComplete(DisplayView*)), this, SLOT(progressDone(DisplayView*)));
    mProgress->setWidth(mProgressWidth, 6.0, InterpolatedValue::Linear);
}

void DemoScene::buildChargingCard(const QRect& rect)
{
    auto* card = new PanelView(mRoot, "charging", kCard, 16);
    card->moveTo(rect.x(), rect.y());
    card->resizeTo(rect.width(), rect.height());
    const int spinnerSize = qMin(rect.width() - 2 * kMargin, rect.height() - 3 * kMargin - 40);
    mSpinner = new SpinnerView(card, "spinner", kCharge);
    mSpinner->moveTo((rect.width() - spinnerSize) / 2, kMargin);
    mSpinner->resizeTo(spinnerSize, spinnerSize);
    auto* label =
        new LabelView(card, "chargeLevel", QStringLiteral("Charging  72 %"), 24, Qt::white, Qt::AlignCenter);
    label->moveTo(kMargin, rect.height() - kMargin - 40);
    label->resizeTo(rect.width() - 2 * kMargin, 40);
    mPulse = new PanelView(card, "pulse", kCharge, 6);
    mPulse->moveTo(kMargin, kMargin);
    mPulse->resizeTo(12, 12);
    connect(mPulse, SIGNAL(animationComplete(DisplayView*)), this, SLOT(pulseDone(DisplayView*)));
    mPulse->setAlpha(0.1f, 1.0, InterpolatedValue::EaseInOutCubic);
}

void DemoScene::freeze()
{
    mFrozen = true;
    mSecondTimer.stop();
    mSpinner->setStep(0);
    mDevice->finishViewAnimation(mProgress);
    mDevice->finishViewAnimation(mPulse);
}

void DemoScene::progressDone(DisplayView*)
{
    if (mFrozen)
        return;
    // Back to the start, then along again.
    const bool atEnd = mProgress->width() >= mProgressWidth;
    mProgress->setWidth(atEnd ? 8 : mProgressWidth, atEnd ? 0.8 : 6.0,
                        atEnd ? InterpolatedValue::EaseOutExpo : InterpolatedValue::Linear);
}

void DemoScene::pulseDone(DisplayView*)
{
    if (mFrozen)
        return;
    mPulse->setAlpha(mPulse->alpha() < 0.5f ? 1.0f : 0.1f, 1.0, InterpolatedValue::EaseInOutCubic);
}

void DemoScene::secondPassed()
{
    ++mSeconds;
    const int total = 12 * 3600 + 34 * 60 + mSeconds;
    mClock->setText(QStringLiteral("%1:%2:%3")
                        .arg(total / 3600 % 24, 2, 10, QLatin1Char('0'))
                        .arg(total / 60 % 60, 2, 10, QLatin1Char('0'))
                        .arg(total % 60, 2, 10, QLatin1Char('0')));
}

QPixmap DemoScene::coverArt(int size)
{
    QImage image(qMax(size, 1), qMax(size, 1), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, size);
    sky.setColorAt(0, QColor(38, 20, 80));
    sky.setColorAt(0.6, QColor(200, 70, 110));
    sky.setColorAt(1, QColor(250, 170, 90));
    painter.fillRect(image.rect(), sky);
    QRadialGradient sun(size / 2.0, size * 0.62, size * 0.22);
    sun.setColorAt(0, QColor(255, 240, 180));
    sun.setColorAt(1, QColor(255, 200, 120, 0));
    painter.setBrush(sun);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(QPointF(size / 2.0, size * 0.62), size * 0.22, size * 0.22);
    painter.setBrush(QColor(20, 12, 40));
    painter.drawRect(QRectF(0, size * 0.7, size, size * 0.3));
    painter.setPen(QPen(QColor(255, 220, 120), qMax(1, size / 60)));
    for (int i = 0; i < 5; ++i) {
        const qreal y = size * (0.74 + i * 0.05);
        painter.drawLine(QPointF(size * (0.5 - 0.04 * i), y),
                         QPointF(size * (0.5 - 0.03 * i), y + size * 0.02));
    }
    painter.end();
    return QPixmap::fromImage(image);
}
