#include "DataValue.h"
#include "DataValueManager.h"
#include "DataValues.h"
#include "StringDataValue.h"

#include <QSignalSpy>
#include <gtest/gtest.h>
#include <thread>

class DataValueTest : public ::testing::Test
{
protected:
    void SetUp() override { DataValueManager::instance()->processPendingChanges(); }
};

TEST_F(DataValueTest, ChangesAreDeliveredOnlyByProcessPendingChanges)
{
    DataValue v(QStringLiteral("speed"), 0.0);
    QSignalSpy spy(&v, SIGNAL(valueChanged(DataValue*)));
    v.setValue(12.5);
    EXPECT_DOUBLE_EQ(v.toReal(), 12.5);
    EXPECT_EQ(spy.count(), 0);
    EXPECT_EQ(DataValueManager::instance()->processPendingChanges(), 1);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.first().first().value<DataValue*>(), &v);
    EXPECT_EQ(DataValueManager::instance()->processPendingChanges(), 0);
}

TEST_F(DataValueTest, SameValueQueuesNothingAndRepeatedWritesCoalesce)
{
    DataValue v(QStringLiteral("gear"), 1);
    QSignalSpy spy(&v, SIGNAL(valueChanged(DataValue*)));
    v.setValue(1);
    EXPECT_EQ(DataValueManager::instance()->processPendingChanges(), 0);
    v.setValue(2);
    v.setValue(3);
    v.addValue(1.0);
    DataValueManager::instance()->processPendingChanges();
    EXPECT_EQ(spy.count(), 1);
    EXPECT_DOUBLE_EQ(v.toReal(), 4.0);
}

TEST_F(DataValueTest, WritesFromManyThreadsArriveInOneBatch)
{
    constexpr int kValues = 8;
    std::vector<std::unique_ptr<DataValue>> values;
    int delivered = 0;
    for (int i = 0; i < kValues; ++i) {
        values.emplace_back(new DataValue(QStringLiteral("v%1").arg(i), 0));
        QObject::connect(values.back().get(), &DataValue::valueChanged, [&delivered] { ++delivered; });
    }
    std::vector<std::thread> threads;
    for (int i = 0; i < kValues; ++i) {
        DataValue* v = values[i].get();
        threads.emplace_back([v, i] {
            for (int n = 1; n <= 1000; ++n) {
                DataValue::EventLocker lock(v);
                v->setValue(n * (i + 1));
            }
        });
    }
    for (std::thread& t : threads)
        t.join();
    EXPECT_EQ(delivered, 0);
    EXPECT_EQ(DataValueManager::instance()->processPendingChanges(), kValues);
    EXPECT_EQ(delivered, kValues);
    for (int i = 0; i < kValues; ++i)
        EXPECT_EQ(values[i]->toInt(), 1000 * (i + 1));
}

TEST_F(DataValueTest, EventLockerDefersTheNotificationToTheOutermostWriter)
{
    DataValue v(QStringLiteral("pair"), 0);
    {
        DataValue::EventLocker outer(v);
        v.setValue(1);
        EXPECT_EQ(DataValueManager::instance()->pendingCount(), 0);
        v.setValue(2);
    }
    EXPECT_EQ(DataValueManager::instance()->pendingCount(), 1);
    DataValueManager::instance()->processPendingChanges();
}

TEST_F(DataValueTest, ListenerWritingDuringDeliveryGetsTheNextBatch)
{
    DataValue a(QStringLiteral("a"), 0);
    DataValue b(QStringLiteral("b"), 0);
    int bCount = 0;
    QObject::connect(&a, &DataValue::valueChanged, [&b] { b.setValue(b.toInt() + 1); });
    QObject::connect(&b, &DataValue::valueChanged, [&bCount] { ++bCount; });
    a.setValue(1);
    EXPECT_EQ(DataValueManager::instance()->processPendingChanges(), 1);
    EXPECT_EQ(bCount, 0);
    EXPECT_EQ(DataValueManager::instance()->processPendingChanges(), 1);
    EXPECT_EQ(bCount, 1);
}

TEST_F(DataValueTest, ValueDeletedBeforeDeliveryIsSkipped)
{
    auto* doomed = new DataValue(QStringLiteral("doomed"), 0);
    DataValue killer(QStringLiteral("killer"), 0);
    QObject::connect(&killer, &DataValue::valueChanged, [&doomed] {
        delete doomed;
        doomed = nullptr;
    });
    killer.setValue(1);
    doomed->setValue(1);
    EXPECT_EQ(DataValueManager::instance()->processPendingChanges(), 2);
    EXPECT_EQ(doomed, nullptr);
    EXPECT_EQ(DataValueManager::instance()->pendingCount(), 0);
}

TEST_F(DataValueTest, StringValueEmitsBothSignalsAndNamedValuesExist)
{
    StringDataValue s(QStringLiteral("title"));
    QSignalSpy generic(&s, SIGNAL(valueChanged(DataValue*)));
    QSignalSpy text(&s, SIGNAL(stringValueChanged(StringDataValue*)));
    s.setString(QStringLiteral("Navigation"));
    DataValueManager::instance()->processPendingChanges();
    EXPECT_EQ(generic.count(), 1);
    EXPECT_EQ(text.count(), 1);
    EXPECT_STREQ(s.metaObject()->className(), "StringDataValue");

    EXPECT_EQ(GUI_language.name(), QStringLiteral("GUI_language"));
    EXPECT_EQ(CD_displayState.name(), QStringLiteral("CD_displayState"));
    EXPECT_EQ(GUI_softwareUpdateGatewayInProgress.toBool(), false);
}
