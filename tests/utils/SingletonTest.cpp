#include "Singleton.h"
#include "LogCapture.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

std::atomic<int> gConstructed{0};

struct Counted
{
    Counted() { ++gConstructed; }
    int payload = 7;
};

struct SelfRequesting
{
    SelfRequesting() { reentered = Singleton<SelfRequesting>::instance(); }
    SelfRequesting* reentered = reinterpret_cast<SelfRequesting*>(1);
};

struct Leaky
{
    ~Leaky() { ++destroyed; }
    static inline int destroyed = 0;
};

} // namespace

TEST(Singleton, CreatedOnceAcrossThreads)
{
    Singleton<Counted>::reset();
    gConstructed = 0;
    std::vector<std::thread> threads;
    std::atomic<Counted*> seen[8];
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&seen, i] { seen[i] = Singleton<Counted>::instance(); });
    for (std::thread& t : threads)
        t.join();
    EXPECT_EQ(gConstructed.load(), 1);
    for (auto& s : seen)
        EXPECT_EQ(s.load(), Singleton<Counted>::instance());
}

TEST(Singleton, RecursiveCreationIsReportedAndAnsweredWithNull)
{
    LogCapture capture;
    SelfRequesting* s = Singleton<SelfRequesting>::instance();
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->reentered, nullptr);
    EXPECT_EQ(capture.assertions(),
              QStringList{
                  QStringLiteral("The creation of this singleton has recursively requested the singleton")});
    EXPECT_EQ(Singleton<SelfRequesting>::instance(), s);
}

TEST(Singleton, RequestAfterShutdownIsReportedUntilReset)
{
    Singleton<Counted>::instance();
    Singleton<Counted>::shutdown();
    LogCapture capture;
    EXPECT_EQ(Singleton<Counted>::instance(), nullptr);
    EXPECT_EQ(capture.assertions(), QStringList{QStringLiteral("Trying to create singleton after shutdown")});
    Singleton<Counted>::reset();
    EXPECT_NE(Singleton<Counted>::instance(), nullptr);
}

TEST(Singleton, LeakedFlagKeepsTheInstanceAlive)
{
    using LeakySingleton = Singleton<Leaky, int(SingletonCreation::Leaked)>;
    Leaky* first = LeakySingleton::instance();
    LeakySingleton::reset();
    EXPECT_EQ(Leaky::destroyed, 0);
    ASSERT_NE(first, nullptr);
    EXPECT_NE(LeakySingleton::instance(), nullptr);
    // Let go of on purpose: the leak checker would report it.
    delete first;
}
