#include "LogCapture.h"
#include "ScopedConfigOverride.h"
#include "Style.h"
#include "StyleData.h"
#include "StyleManager.h"
#include "support/RestyleRecorder.h"
#include "support/ScopedStyleAssets.h"

#include <QFile>
#include <gtest/gtest.h>
#include <malloc.h>

// How long the registry keeps a style: for the life of the process by default;
// with "ui/release_unused_styles", as long as a handle, a listener or a named style
// holds it, and no longer.

namespace {

class StyleLifetimeTest : public ::testing::Test
{
protected:
    void load(const QByteArray& styles)
    {
        for (const char* name : {"styles-common.conf", "assets-common.conf", "assets.conf"})
            assets.write(name, "");
        assets.write("styles.conf", styles);
        assets.manager()->loadConfiguration();
    }

    Style::StyleData* probe(const QString& styleText) const
    {
        return assets.manager()->registeredSpec(styleText);
    }

    ScopedStyleAssets assets;
    LogCapture log;
};

// Creates a burst of styles from inside a restyle notification.
class Churner : public QObject
{
    Q_OBJECT

public:
    int calls = 0;

public Q_SLOTS:
    void restyled()
    {
        ++calls;
        for (int i = 0; i < 3 * 4096; ++i)
            Style(QStringLiteral("Height:%1").arg(i));
    }
};

// Counts assertions without keeping them: a million of them would be memory too.
class CountingSink : public LogSink
{
public:
    CountingSink() : mPrevious(Logger::setSink(this)) {}
    ~CountingSink() override { Logger::setSink(mPrevious); }
    void write(const LogRecord& record) override { mAssertions += record.isAssertion ? 1 : 0; }
    int assertions() const { return mAssertions; }

private:
    int mAssertions = 0;
    LogSink* mPrevious;
};

} // namespace

TEST_F(StyleLifetimeTest, ByDefaultADroppedStyleIsKeptAndSharedAgain)
{
    load("Panel=\"BackgroundColor:black\"\n");
    const Style::StyleData* first = Style("Panel; Width:4").data();
    // Well past the size at which a releasing registry sweeps.
    for (int i = 0; i < 3 * 4096; ++i)
        Style(QStringLiteral("Height:%1").arg(i)).data();

    EXPECT_GE(assets.manager()->styleCount(), 3 * 4096 + 1);
    EXPECT_EQ(probe("Panel;Width:4"), first);
    const Style again(" Panel ; Width:4 ");
    EXPECT_EQ(again.data(), first);
    EXPECT_EQ(again.width(), 4);
    EXPECT_EQ(again.stringValue(Style::BackgroundColor), "black");
    EXPECT_EQ(Style("Height:17").data(), probe("Height:17"));
}

TEST_F(StyleLifetimeTest, OnlyStylesThatNothingHoldsAreReleased)
{
    load("Panel=\"BackgroundColor:black; Width:10\"\n");
    const Style held("Width:1; Height:2");
    QStringList journal;
    RestyleRecorder listener("listener", &journal);
    Style("Width:3").registerListener(&listener);
    Style("Width:4");
    const int before = assets.manager()->styleCount();

    // "Width:4" goes, and so does the "Missing" placeholder its only user named.
    Style("Missing; Width:5");
    EXPECT_EQ(assets.manager()->releaseUnusedStyles(), 3);
    EXPECT_EQ(assets.manager()->styleCount(), before - 1);
    EXPECT_NE(probe("Width:1;Height:2"), nullptr);
    EXPECT_NE(probe("Width:3"), nullptr);
    EXPECT_EQ(probe("Width:4"), nullptr);
    EXPECT_EQ(probe("Missing;Width:5"), nullptr);
    // The named style and the text that defines it stay without any handle.
    EXPECT_NE(assets.manager()->lookupStyle("Panel"), nullptr);
    EXPECT_NE(probe("BackgroundColor:black;Width:10"), nullptr);
    EXPECT_EQ(held.height(), 2);

    // A listener that is gone no longer holds its style.
    EXPECT_EQ(assets.manager()->releaseUnusedStyles(), 0);
    {
        RestyleRecorder shortLived("short", &journal);
        Style("Width:6").registerListener(&shortLived);
        EXPECT_EQ(assets.manager()->releaseUnusedStyles(), 0);
    }
    EXPECT_EQ(assets.manager()->releaseUnusedStyles(), 1);
}

TEST_F(StyleLifetimeTest, AReleasedStyleComesBackWhole)
{
    load("Title=\"FontSize:30; Alignment:left|vcenter\"\n");
    const QString written = QStringLiteral(" Title ;; Width:7 ; InnerPadding:1,2 ");
    Style(written).data();
    ASSERT_GT(assets.manager()->releaseUnusedStyles(), 0);

    // The written text was remembered too: it must not lead to the released data.
    const Style again(written);
    EXPECT_EQ(again.styleText(), "Title;Width:7;InnerPadding:1,2");
    EXPECT_EQ(again.fontSize(), 30);
    EXPECT_EQ(again.alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    EXPECT_EQ(again.width(), 7);
    EXPECT_EQ(again.padding(Style::InnerPadding), Padding(1, 2));
    EXPECT_TRUE(log.assertions().isEmpty()) << log.assertions().join('\n').toStdString();
}

TEST_F(StyleLifetimeTest, AStyleBuiltOnANamedStyleStillFollowsItsRedefinition)
{
    load("Panel=\"BackgroundColor:black\"\n");
    Style user("Panel; Width:10");
    assets.manager()->releaseUnusedStyles();

    assets.manager()->lookupOrCreateAlias("Panel", "BackgroundColor:navy");
    EXPECT_EQ(user.stringValue(Style::BackgroundColor), "navy");
    // The old definition is no longer held by anything.
    EXPECT_EQ(assets.manager()->releaseUnusedStyles(), 1);
    EXPECT_EQ(probe("BackgroundColor:black"), nullptr);
    EXPECT_EQ(Style("Panel").stringValue(Style::BackgroundColor), "navy");
}

TEST_F(StyleLifetimeTest, AHandleOutlivesTheRegistry)
{
    Style survivor("Width:9; Later");
    Style named(assets.manager()->lookupOrCreateAlias("Named", "Height:4"));
    Singleton<StyleManager>::reset();
    EXPECT_EQ(survivor.width(), 9);
    EXPECT_EQ(named.height(), 4);
    EXPECT_EQ(survivor.data()->prerequisites().size(), 0);
}

TEST_F(StyleLifetimeTest, RestyledListenersMayCreateStylesWhileOthersAreNotified)
{
    // A listener that builds many new styles while the registry is notifying must
    // not release the styles still waiting for their notification, held by nothing
    // else as they may be.
    ScopedConfigOverride releasing("ui/release_unused_styles", true);
    load("Base=\"Width:1\"\n");
    Churner churner;
    QStringList journal;
    RestyleRecorder last("last", &journal);
    Style("Base; Height:1").registerListener(&churner);
    Style("Base; Height:2");
    Style("Base; Height:3").registerListener(&last);

    assets.manager()->lookupOrCreateAlias("Base", "Width:2");
    EXPECT_EQ(churner.calls, 1);
    EXPECT_EQ(last.calls(), 1);
    EXPECT_NE(probe("Base;Height:2"), nullptr);
    // The burst, that style and the old definition of Base.
    EXPECT_EQ(assets.manager()->releaseUnusedStyles(), 3 * 4096 + 2);
    EXPECT_EQ(probe("Base;Height:2"), nullptr);
}

// Resident memory stays flat while a million distinct style strings are created
// and dropped, named parts included. mallinfo2 counts the bytes the allocator has
// handed out; under a sanitizer's allocator it reads zero and only the style count
// is checked.
TEST_F(StyleLifetimeTest, AMillionTransientStylesKeepMemoryFlat)
{
    ScopedConfigOverride releasing("ui/release_unused_styles", true);
    load("Panel=\"BackgroundColor:black\"\n");
    CountingSink sink;
    const int count = qEnvironmentVariableIntValue("ORBIS_STYLE_CHURN") > 0
                          ? qEnvironmentVariableIntValue("ORBIS_STYLE_CHURN")
                          : 1000000;
    const auto make = [](int i) {
        // Every 16th names a style that no file defines, which registers a placeholder.
        return i % 16 ? QStringLiteral("Panel; Width:%1; Color:#%2")
                            .arg(i)
                            .arg(i % 4096, 3, 16, QLatin1Char('0'))
                      : QStringLiteral("Undefined%1; Height:%2").arg(i).arg(i % 100);
    };
    const int warmUp = 50000;
    int undefinedNames = 0;
    for (int i = 0; i < warmUp; ++i) {
        Style(make(i)).data();
        undefinedNames += i % 16 ? 0 : 1;
    }
    malloc_trim(0);
    const size_t inUseBefore = mallinfo2().uordblks;
    int peakStyles = 0;
    for (int i = warmUp; i < warmUp + count; ++i) {
        Style style(make(i));
        EXPECT_EQ(style.intValue(Style::Width) + style.intValue(Style::Height), i % 16 ? i : i % 100);
        undefinedNames += i % 16 ? 0 : 1;
        peakStyles = qMax(peakStyles, assets.manager()->styleCount());
    }
    malloc_trim(0);
    const size_t inUseAfter = mallinfo2().uordblks;

    EXPECT_EQ(sink.assertions(), undefinedNames);
    // The sweep threshold, overshot by the last text and the placeholder it named.
    EXPECT_LE(peakStyles, 4096 + 2);
    // Growth under 2 MB: the registry's hashes between sweeps, not the styles.
    RecordProperty("heap_before", std::to_string(inUseBefore));
    RecordProperty("heap_after", std::to_string(inUseAfter));
    EXPECT_LT(qint64(inUseAfter) - qint64(inUseBefore), 2 * 1024 * 1024)
        << "before " << inUseBefore << " after " << inUseAfter;
}

#include "StyleLifetimeTest.moc"
