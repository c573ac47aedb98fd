#include "control/Label.h"

#include "DataValueManager.h"
#include "LogCapture.h"
#include "StringDataValue.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

void publish(DataValue& value, const QVariant& v)
{
    {
        DataValue::EventLocker lock(value);
        value.setValue(v);
    }
    DataValueManager::instance()->processPendingChanges();
}

struct LabelValueTest : ::testing::Test
{
    bool settled = (DataValueManager::instance()->processPendingChanges(), true);
    DisplayView root{nullptr, "root"};
    Label* label = new Label(&root, "label");
    DataValue number{QStringLiteral("Test_labelNumber"), QVariant()};
    StringDataValue text{QStringLiteral("Test_labelText"), QString()};
};

TEST_F(LabelValueTest, NumbersTakeThePrecisionAndTheFormat)
{
    label->setStyle(Style(QStringLiteral("Precision:1; InvalidText:--")));
    label->setValueFormat(QStringLiteral("%1 \u00b0C"));
    label->setValueSource(number);
    label->refreshValue();
    EXPECT_EQ(label->text(), QStringLiteral("--"));

    publish(number, 21.46);
    EXPECT_EQ(label->text(), QStringLiteral("21.5 \u00b0C"));
    // A temperature just under zero rounds to "0", not "-0".
    publish(number, -0.04);
    EXPECT_EQ(label->text(), QStringLiteral("0.0 \u00b0C"));
    publish(number, -3.26);
    EXPECT_EQ(label->text(), QStringLiteral("-3.3 \u00b0C"));

    // The format and the precision apply at once to the value shown.
    label->setPrecision(0);
    EXPECT_EQ(label->text(), QStringLiteral("-3 \u00b0C"));
    label->setValueFormat(QStringLiteral("%1 degrees"));
    EXPECT_EQ(label->text(), QStringLiteral("-3 degrees"));

    publish(number, std::numeric_limits<double>::infinity());
    EXPECT_EQ(label->text(), QStringLiteral("--"));
    publish(number, QVariant());
    EXPECT_EQ(label->text(), QStringLiteral("--"));
    label->clearValueSource();
}

TEST_F(LabelValueTest, StringsShowAsTheyAreAndUnsetOnesAsTheInvalidText)
{
    LogCapture log;
    label->setInvalidText(QStringLiteral("No media"));
    label->setValueSource(text);
    label->refreshValue();
    EXPECT_EQ(label->text(), QStringLiteral("No media"));
    publish(text, QStringLiteral("Northern Lights"));
    EXPECT_EQ(label->text(), QStringLiteral("Northern Lights"));
    // A format without a place for the value leaves the value alone.
    label->setValueFormat(QStringLiteral("Playing"));
    EXPECT_EQ(label->text(), QStringLiteral("Northern Lights"));
    label->clearValueSource();
    // Bound labels listen: nothing is reported.
    EXPECT_TRUE(log.messages().isEmpty()) << log.messages().join('\n').toStdString();
}

TEST_F(LabelValueTest, PrecisionIsKeptWithinReason)
{
    label->setValueSource(number);
    publish(number, 1.0 / 3);
    label->setPrecision(-2);
    EXPECT_EQ(label->text(), QStringLiteral("0"));
    label->setPrecision(40);
    EXPECT_EQ(label->text(), QStringLiteral("0.333333333"));
    label->clearValueSource();
}

} // namespace
