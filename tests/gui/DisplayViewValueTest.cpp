#include "DataValueManager.h"
#include "DisplayView.h"
#include "LogCapture.h"
#include "StringDataValue.h"
#include "support/QtPrinters.h"

#include <QThread>
#include <gtest/gtest.h>
#include <thread>

namespace {
class Gauge : public DisplayView
{
    Q_OBJECT

public:
    using DisplayView::DisplayView;
    void valueChanged(bool animated, double value) override
    {
        numbers.append(value);
        this->animated = animated;
        thread = QThread::currentThread();
    }
    void valueChanged(bool, QString value) override { texts.append(value); }

    QList<double> numbers;
    QStringList texts;
    bool animated = false;
    QThread* thread = nullptr;
    int direct = 0;

public slots:
    void onDirect(DataValue*) { ++direct; }
};

void deliver()
{
    DataValueManager::instance()->processPendingChanges();
}
} // namespace

TEST(ValueBinding, WritesFromAnotherThreadArriveOnTheGuiThread)
{
    deliver();
    DataValue speed("test/speed", 0.0);
    Gauge gauge(nullptr, "gauge");
    gauge.setValueSource(speed);
    std::thread([&speed] {
        DataValue::EventLocker lock(speed);
        speed.setValue(42.5);
    }).join();
    EXPECT_TRUE(gauge.numbers.isEmpty()); // only the frame's delivery hands it over
    deliver();
    EXPECT_EQ(gauge.numbers, QList<double>({42.5}));
    EXPECT_EQ(gauge.thread, QThread::currentThread());
    EXPECT_TRUE(gauge.animated);

    gauge.setCurrentValue(10);
    gauge.addToValueSource(2.5);
    EXPECT_DOUBLE_EQ(gauge.currentValue(), 12.5);
    deliver();
    EXPECT_EQ(gauge.numbers.last(), 12.5);

    gauge.clearValueSource();
    speed.setValue(1.0);
    deliver();
    EXPECT_EQ(gauge.numbers.size(), 2);
    EXPECT_EQ(gauge.valueSource(), nullptr);
}

TEST(ValueBinding, StringValuesGoToTheTextOverload)
{
    deliver();
    StringDataValue title("test/title", "a");
    Gauge gauge(nullptr, "gauge");
    DataValue& asBase = title;
    gauge.setValueSource(asBase); // recognised by its class
    title.setString("b");
    deliver();
    EXPECT_EQ(gauge.texts, QStringList("b"));
    EXPECT_TRUE(gauge.numbers.isEmpty());
    gauge.clearValueSource();
    title.setString("c");
    deliver();
    EXPECT_EQ(gauge.texts.size(), 1);
}

TEST(ValueBinding, ViewThatDoesNotListenIsReportedOnEachChange)
{
    deliver();
    DataValue level("test/level", 0);
    DisplayView deaf(nullptr, "deaf");
    deaf.setValueSource(level);
    LogCapture capture;
    level.setValue(1);
    deliver();
    level.setValue(2);
    deliver();
    EXPECT_EQ(capture.assertions(), QStringList({"did setValueSource but is not listening for changes",
                                                 "did setValueSource but is not listening for changes"}));
}

TEST(ValueBinding, DvConnectCallsTheSlotNowAndOnChanges)
{
    deliver();
    DataValue level("test/other", 0);
    Gauge gauge(nullptr, "gauge");
    EXPECT_TRUE(gauge.dvConnect(level, SLOT(onDirect(DataValue*)), true));
    EXPECT_EQ(gauge.direct, 1);
    level.setValue(3);
    deliver();
    EXPECT_EQ(gauge.direct, 2);
}

#include "DisplayViewValueTest.moc"
