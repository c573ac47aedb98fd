#include "ScrollScene.h"

#include "ScrollSceneList.h"
#include "ScrollSceneRows.h"

#include <DisplayDevice.h>
#include <control/Label.h>
#include <control/Panel.h>
#include <control/ProgressRing.h>

ScrollScene::ScrollScene(DisplayDevice* device)
    : mDevice(device), mRows(std::make_unique<ScrollSceneRows>(kRows))
{
    mRoot = new DisplayView(device->views(), "scrollScene");
    mRoot->setStyle(Style(QStringLiteral("Bench/Screen")));
    mRoot->resizeTo(device->width(), device->height());
    auto* header = new Panel(mRoot, "header", QStringLiteral("Bench/Header"));
    new Label(header, "title", QStringLiteral("Media"), QStringLiteral("Bench/HeaderText"));
    auto* body = new DisplayView(mRoot, "body");
    body->setStyle(Style(QStringLiteral("Bench/Body")));
    mList = new ScrollSceneList(body, kPixelsPerSecond);
    mList->setStyle(Style(QStringLiteral("Bench/List")));
    mList->setOption(ScrollableView::UseScrollBar, false);
    mList->setUseScrollBar(false);
    mList->setDelegate(mRows.get());
    mList->setModel(mRows.get());
    auto* panel = new Panel(body, "panel", QStringLiteral("Bench/Panel"));
    mRing = new ProgressRing(panel, "ring", QStringLiteral("Bench/Ring"));
    mRing->setValue(0.75);
    // The ring turns as a whole: a layer makes each turn a recomposite, not a redraw.
    mRing->setUseLayer(true);
    mRing->setTurnPeriod(kSecondsPerTurn);
    new Label(panel, "nowPlaying", QStringLiteral("Now playing"), QStringLiteral("Bench/NowPlaying"));
    mStarted.start();
}

ScrollScene::~ScrollScene()
{
    delete mRoot;
}

void ScrollScene::freeze()
{
    mList->setRunning(false);
    mRing->setTurnPeriod(0);
}
