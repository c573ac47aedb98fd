#pragma once

#include <QStringList>
#include <control/Panel.h>

class Button;

// The row of screen buttons along the bottom. The chosen one sits on a pill that
// slides over from the one chosen before.
class NavigationBar : public Panel
{
    Q_OBJECT

public:
    // `screens` are the screens' names; `titles` what the buttons say.
    NavigationBar(DisplayView* parent, const QStringList& screens, const QStringList& titles);

    void select(const QString& screen, bool animated);
    QString selected() const { return mSelected; }
    Button* button(const QString& screen) const;

    void tick() override;

    static constexpr double kSlideSeconds = 0.35;

signals:
    void screenChosen(const QString& screen);

private slots:
    void buttonClicked(Button* button);

private:
    void placeIndicator(bool animated);

    QStringList mScreens;
    QList<Button*> mButtons;
    Panel* mIndicator;
    QString mSelected;
    QRect mIndicatorTarget;
};
