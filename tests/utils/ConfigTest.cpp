#include "ConfigRegistry.h"
#include "ConfigValue.h"
#include "LogCapture.h"
#include "ScopedConfigOverride.h"

#include <QTemporaryDir>
#include <QTextStream>
#include <gtest/gtest.h>

namespace {

ConfigIntValue gTestInt("test_config/int_value", 800);
ConfigBoolValue gTestBool("test_config/bool_value", true);
ConfigRealValue gTestReal("test_config/real_value", 0.2);
ConfigStringValue gTestString("test_config/string_value", QStringLiteral("fallback"));

QString writeFile(const QTemporaryDir& dir, const QString& name, const QString& text)
{
    const QString path = dir.filePath(name);
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    QTextStream(&f) << text;
    return path;
}

} // namespace

TEST(Config, DefaultsUntilGiven)
{
    EXPECT_EQ(gTestInt.value(), 800);
    EXPECT_TRUE(gTestBool.value());
    EXPECT_DOUBLE_EQ(gTestReal.value(), 0.2);
    EXPECT_EQ(gTestString.value(), QStringLiteral("fallback"));
}

TEST(Config, ScopedOverrideAppliesAndRestores)
{
    {
        ScopedConfigOverride a(QStringLiteral("test_config/int_value"), 42);
        ScopedConfigOverride b(QStringLiteral("test_config/bool_value"), false);
        EXPECT_EQ(gTestInt.value(), 42);
        EXPECT_FALSE(gTestBool.value());
        {
            ScopedConfigOverride nested(QStringLiteral("test_config/int_value"), 7);
            EXPECT_EQ(gTestInt.value(), 7);
        }
        EXPECT_EQ(gTestInt.value(), 42);
    }
    EXPECT_EQ(gTestInt.value(), 800);
    EXPECT_TRUE(gTestBool.value());
}

TEST(Config, UnparsableValueWarnsNamingTheKeyAndKeepsDefault)
{
    LogCapture capture;
    ScopedConfigOverride bad(QStringLiteral("test_config/int_value"), QStringLiteral("eight hundred"));
    EXPECT_EQ(gTestInt.value(), 800);
    ASSERT_EQ(capture.records().size(), 1);
    EXPECT_EQ(capture.records().first().level, LogRecord::Warn);
    EXPECT_TRUE(capture.records().first().message.contains(QStringLiteral("test_config/int_value")));
    // Parsed once per change, not once per read.
    gTestInt.value();
    EXPECT_EQ(capture.records().size(), 1);
}

TEST(Config, BooleanWordsAndHexIntegers)
{
    for (const char* word : {"true", "1", "yes", "On", "TRUE"}) {
        ScopedConfigOverride no(QStringLiteral("test_config/bool_value"), QStringLiteral("false"));
        EXPECT_FALSE(gTestBool.value());
        ScopedConfigOverride yes(QStringLiteral("test_config/bool_value"), QString::fromLatin1(word));
        EXPECT_TRUE(gTestBool.value()) << word;
    }
    for (const char* word : {"false", "0", "no", "OFF"}) {
        ScopedConfigOverride no(QStringLiteral("test_config/bool_value"), QString::fromLatin1(word));
        EXPECT_FALSE(gTestBool.value()) << word;
    }
    ScopedConfigOverride hex(QStringLiteral("test_config/int_value"), QStringLiteral("0x10"));
    EXPECT_EQ(gTestInt.value(), 16);
}

TEST(Config, IniFileGroupsBecomeSlashKeysAndOverridesWin)
{
    QTemporaryDir dir;
    const QString path = writeFile(dir, QStringLiteral("a.ini"),
                                   QStringLiteral("[test_config]\nreal_value=1.5\nstring_value=a,b,c\n"));
    ConfigRegistry& r = ConfigRegistry::instance();
    ASSERT_TRUE(r.loadFile(path));
    EXPECT_DOUBLE_EQ(gTestReal.value(), 1.5);
    EXPECT_EQ(gTestString.value(), QStringLiteral("a,b,c"));
    EXPECT_TRUE(r.applyOverride(QStringLiteral("test_config/real_value = 2.25")));
    EXPECT_DOUBLE_EQ(gTestReal.value(), 2.25);
    r.clearOverride(QStringLiteral("test_config/real_value"));
    EXPECT_DOUBLE_EQ(gTestReal.value(), 1.5);

    // Put the file's values back to the defaults for later tests.
    const QString reset = writeFile(dir, QStringLiteral("b.ini"),
                                    QStringLiteral("[test_config]\nreal_value=0.2\nstring_value=fallback\n"));
    ASSERT_TRUE(r.loadFile(reset));
}

TEST(Config, MissingFileAndMalformedOverrideWarnAndChangeNothing)
{
    LogCapture capture;
    ConfigRegistry& r = ConfigRegistry::instance();
    const quint64 before = r.generation();
    EXPECT_FALSE(r.loadFile(QStringLiteral("/nonexistent/orbis.ini")));
    EXPECT_FALSE(r.applyOverride(QStringLiteral("no equals sign")));
    EXPECT_FALSE(r.applyOverride(QStringLiteral("=value")));
    EXPECT_EQ(r.generation(), before);
    ASSERT_EQ(capture.records().size(), 3);
    for (const LogRecord& rec : capture.records())
        EXPECT_EQ(rec.level, LogRecord::Warn);
    EXPECT_TRUE(capture.records().first().message.contains(QStringLiteral("/nonexistent/orbis.ini")));
}

TEST(Config, RegistryListsKeysWithDefaultAndCurrentValue)
{
    ScopedConfigOverride o(QStringLiteral("test_config/int_value"), 5);
    bool found = false;
    QString previous;
    for (const ConfigRegistry::Entry& e : ConfigRegistry::instance().entries()) {
        EXPECT_LT(previous, e.key);
        previous = e.key;
        if (e.key == QLatin1String("test_config/int_value")) {
            found = true;
            EXPECT_EQ(e.defaultValue, QStringLiteral("800"));
            EXPECT_EQ(e.currentValue, QStringLiteral("5"));
            EXPECT_TRUE(e.isSet);
        }
    }
    EXPECT_TRUE(found);
}
