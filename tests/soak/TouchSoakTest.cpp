#include "LogCapture.h"
#include "StyleManager.h"
#include "control/Button.h"
#include "control/ListDelegate.h"
#include "control/ListModel.h"
#include "control/ListView.h"
#include "control/Slider.h"
#include "control/Switch.h"
#include "support/FingerFixture.h"
#include "support/SoakScale.h"

#include <QMap>
#include <QRegularExpression>
#include <random>

// Random touches from many fingers through the dispatcher into controls and a
// scrolling list of controls, with the tree changing under them: views hidden,
// disabled, deleted and made again, touches cancelled, list rows inserted and
// removed. Whatever the order, nothing but the expected misuse is reported and
// every view's touch count is back to 0 when the fingers are gone.

namespace {

// What the touches did, so that the soak shows it reached what it claims to.
struct Outcomes
{
    int taps = 0;
    int holds = 0;
    int cancels = 0;
    int scrolls = 0;

    void follow(ControlBase* control)
    {
        QObject::connect(control, qOverload<ControlBase*>(&ControlBase::tapped), [this] { ++taps; });
        QObject::connect(control, qOverload<ControlBase*>(&ControlBase::held), [this] { ++holds; });
        QObject::connect(control, qOverload<ControlBase*>(&ControlBase::cancelTouched),
                         [this] { ++cancels; });
    }
};

class RowsModel : public ListModel
{
public:
    int count() const override { return mCount; }
    void insert(int at, int count)
    {
        mCount += count;
        emit rowsInserted(this, at, count);
    }
    void remove(int at, int count)
    {
        mCount -= count;
        emit rowsRemoved(this, at, count);
    }

private:
    int mCount = 200;
};

// A row is a button with a switch beside it, so that touches on the list either
// scroll it or land on a control that a scroll must take away.
class ControlRows : public ListDelegate
{
public:
    explicit ControlRows(Outcomes* outcomes) : mOutcomes(outcomes) {}

    DisplayView* createRow(int, DisplayView* parent) override
    {
        auto* row = new DisplayView(parent, "row");
        auto* button = new Button(row, "rowButton", QStringLiteral("Row"));
        button->moveTo(10, 5);
        button->resizeTo(200, 50);
        button->setHoldTime(400);
        mOutcomes->follow(button);
        auto* toggle = new Switch(row, "rowSwitch");
        toggle->moveTo(240, 10);
        toggle->resizeTo(80, 40);
        mOutcomes->follow(toggle);
        return row;
    }
    void bindRow(DisplayView* view, int row) override { view->resizeTo(400, 40 + row % 3 * 10); }
    int rowHeight(int row) const override { return 40 + row % 3 * 10; }

private:
    Outcomes* mOutcomes;
};

struct TouchSoakTest : FingerFixture
{
    // Fingers beyond the dispatcher's table are misuse the driver may still send.
    static constexpr int kIds = TouchDevice::kMaxTouches + 2;

    Outcomes outcomes;
    RowsModel model;
    ControlRows delegate{&outcomes};
    ListView* list = nullptr;
    DisplayView* panel = nullptr;
    std::mt19937 random{20261123};

    TouchSoakTest()
    {
        StyleManager::instance()->initialize();
        device.timer()->stop();
        list = new ListView(device.views(), "list");
        list->moveTo(400, 0);
        list->resizeTo(400, 480);
        list->setDelegate(&delegate);
        list->setModel(&model);
        QObject::connect(list, qOverload<>(&ScrollableView::scrolled), [this] { ++outcomes.scrolls; });
        buildPanel();
    }
    // The list goes before the model and the delegate it uses.
    ~TouchSoakTest() override { delete list; }

    void buildPanel()
    {
        panel = new DisplayView(device.views(), "panel");
        panel->resizeTo(400, 480);
        for (int i = 0; i < 6; ++i) {
            auto* button = new Button(panel, "button", QStringLiteral("Button"));
            button->moveTo(10 + i % 2 * 190, 10 + i / 2 * 60);
            button->resizeTo(180 + i * 10, 50);
            button->setHoldTime(i % 2 ? 500 : -1);
            button->setStayPressedWhenDraggedOut(i % 3 == 0);
            outcomes.follow(button);
        }
        auto* toggle = new Switch(panel, "switch");
        toggle->moveTo(10, 200);
        toggle->resizeTo(100, 50);
        auto* slider = new Slider(panel, "slider");
        slider->moveTo(10, 270);
        slider->resizeTo(380, 40);
        auto* vertical = new Slider(panel, "vertical", Qt::Vertical);
        vertical->moveTo(340, 200);
        vertical->resizeTo(40, 270);
        // Overlapping controls: the top one takes the touch.
        auto* over = new Button(panel, "over", QStringLiteral("Over"));
        over->moveTo(150, 330);
        over->resizeTo(150, 100);
        auto* under = new Button(over, "under", QStringLiteral("Under"));
        under->moveTo(-40, 20);
        under->resizeTo(100, 100);
        for (ControlBase* control : {static_cast<ControlBase*>(toggle), static_cast<ControlBase*>(slider),
                                     static_cast<ControlBase*>(vertical), static_cast<ControlBase*>(over),
                                     static_cast<ControlBase*>(under)})
            outcomes.follow(control);
    }

    int uniform(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }
    bool chance(int percent) { return uniform(0, 99) < percent; }

    DisplayView* anyView()
    {
        QList<DisplayView*> views;
        collect(device.views(), &views);
        return views.isEmpty() ? nullptr : views[uniform(0, views.size() - 1)];
    }
    static void collect(DisplayView* view, QList<DisplayView*>* into)
    {
        for (DisplayView* child : view->children().list()) {
            into->append(child);
            collect(child, into);
        }
    }
    static void expectNoTouches(DisplayView* view)
    {
        EXPECT_EQ(view->touchCount(), 0) << view->viewPath().toStdString();
        for (DisplayView* child : view->children().list())
            expectNoTouches(child);
    }

    // One change to the tree or the touches while fingers are down.
    void disturb()
    {
        switch (uniform(0, 7)) {
        case 0:
            if (DisplayView* view = anyView())
                touch->cancelTouchEvents(view);
            break;
        case 1:
            if (DisplayView* view = anyView(); view && view != list && view != panel)
                view->show(!view->visibleFlag());
            break;
        case 2:
            if (DisplayView* view = anyView(); view && view != list)
                view->enable(!view->isEnabled());
            break;
        case 3:
            delete panel;
            buildPanel();
            break;
        case 4:
            model.insert(uniform(0, model.count()), uniform(1, 5));
            break;
        case 5:
            if (model.count() > 20)
                model.remove(uniform(0, model.count() - 10), uniform(1, 5));
            break;
        case 6:
            list->scroll(QPointF(0, uniform(-300, 300)), uniform(0, 1) * 0.3);
            break;
        default:
            clock.advanceMs(uniform(300, 900)); // long enough to hold, too long to tap
            break;
        }
    }
};

} // namespace

TEST_F(TouchSoakTest, RandomTouchesLeaveNoTouchBehind)
{
    LogCapture log;
    const int events = soakCount(50000, 1000000);
    bool down[kIds] = {};
    QPoint at[kIds];
    for (int sent = 0; sent < events;) {
        const int burst = uniform(1, 8);
        for (int i = 0; i < burst; ++i, ++sent) {
            const int id = uniform(0, kIds - 1);
            // Fingers down tend to stay and wander a little; an up for a finger that
            // is up is misuse the driver must cope with too.
            const bool press = down[id] ? chance(85) : chance(70);
            // Mostly on screen, now and then beyond its edges.
            if (!down[id] || chance(20))
                at[id] = QPoint(uniform(-50, 850), uniform(-50, 530));
            else
                at[id] += QPoint(uniform(-12, 12), uniform(-12, 12));
            touch->mouseDriver()->queueEvent(id, press, at[id].x(), at[id].y());
            down[id] = press;
        }
        if (chance(2))
            disturb();
        clock.advanceMs(uniform(0, 40));
        device.doTick();
    }
    for (int id = 0; id < kIds; ++id) {
        if (down[id])
            touch->mouseDriver()->queueEvent(id, false, 0, 0);
    }
    // Scrolls coast and bounce back, hold timers and tap windows run out.
    frames(400);

    expectNoTouches(&device);
    for (int id = 0; id < TouchDevice::kMaxTouches; ++id)
        EXPECT_EQ(touch->info(id)->view, nullptr) << "touch " << id;
    EXPECT_FALSE(touch->viewHasTouch(&device, true));
    EXPECT_GT(outcomes.taps, 0);
    EXPECT_GT(outcomes.holds, 0);
    EXPECT_GT(outcomes.cancels, 0);
    EXPECT_GT(outcomes.scrolls, 0);
    RecordProperty("taps", outcomes.taps);
    RecordProperty("holds", outcomes.holds);
    RecordProperty("cancels", outcomes.cancels);
    RecordProperty("scrolls", outcomes.scrolls);
    // Misuse the soak commits on purpose: fingers beyond the table, and frames far
    // apart where it lets time pass.
    const QRegularExpression expected(
        QStringLiteral("^(invalid touch (%1|%2)|Frame rate [0-9.]+ is below [0-9]+)$")
            .arg(kIds - 2)
            .arg(kIds - 1));
    QMap<QString, int> unexpected;
    for (const LogRecord& record : log.records()) {
        if (record.isAssertion ||
            (record.level != LogRecord::Info && !expected.match(record.message).hasMatch()))
            ++unexpected[record.message];
    }
    EXPECT_TRUE(unexpected.isEmpty()) << QStringList(unexpected.keys()).join('\n').toStdString();
}
