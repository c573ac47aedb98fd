#include "SettingsScreen.h"

#include "SettingsDelegate.h"
#include "SettingsModel.h"

#include <control/Button.h>
#include <control/Label.h>
#include <control/ListView.h>
#include <control/Panel.h>

namespace {
constexpr double kPageFadeSeconds = 0.25;
}

SettingsScreen::SettingsScreen(DisplayView* parent)
    : Screen(parent, "settings", QStringLiteral("Settings/Page")), mModel(new SettingsModel(this)),
      mDelegate(std::make_unique<SettingsDelegate>(mModel))
{
    auto* card = new Panel(this, "card", QStringLiteral("Settings/Card"));
    auto* header = new DisplayView(card, "header");
    header->setStyle(Style(QStringLiteral("Settings/Header")));
    mBack = new Button(header, "back", tr("\u2039  Back"), QStringLiteral("Settings/Back"));
    connect(mBack, &Button::clicked, this, &SettingsScreen::backClicked);
    mBack->hide();
    mTitle = new Label(header, "title", mModel->pageTitle(), QStringLiteral("Settings/Title"));
    mList = new ListView(card, "list");
    mList->setStyle(Style(QStringLiteral("Settings/List")));
    mList->setDelegate(mDelegate.get());
    mList->setModel(mModel);
    connect(mList, &ListView::rowTapped, this, &SettingsScreen::rowTapped);
}

SettingsScreen::~SettingsScreen()
{
    // The list's rows go before the delegate that made them.
    clearAllChildren();
}

QString SettingsScreen::screenName() const
{
    return mModel->page().isEmpty() ? mName : mName + QLatin1Char('/') + mModel->page();
}

// By value: a tapped row passes the model's own string, which setPage() replaces.
void SettingsScreen::openPage(QString page)
{
    if (page == mModel->page() || !SettingsModel::pages().contains(page))
        return;
    mModel->setPage(page);
    mTitle->setText(mModel->pageTitle());
    mBack->show(!page.isEmpty());
    mList->scrollToRow(0, 0);
    mList->setAlpha(1, kPageFadeSeconds, InterpolatedValue::EaseOutQuad, false, 0, false);
    emit pageChanged(this);
}

void SettingsScreen::rowTapped(ListView*, int row)
{
    const SettingsModel::Entry& entry = mModel->entry(row);
    if (entry.kind == SettingsModel::Entry::Page)
        openPage(entry.page);
}

void SettingsScreen::backClicked()
{
    openPage(QString());
}
