#include "toolkit/threading/EventObject.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <latch>
#include <thread>
#include <vector>

namespace Toolkit {
namespace {

constexpr bool c_autoReset = true;
constexpr bool c_signalled = true;

// Lets `count` threads wait for `event`, and calls `meanwhile` when all of them have started.
// Returns the number of threads that saw a signal.
template <typename Action>
long CountWaitersThatSee(EventObject& event, int count, unsigned int timeoutMs, Action meanwhile)
{
    std::latch begun(count);
    std::vector<std::future<bool>> waiters;
    for (int i = 0; i < count; ++i) {
        waiters.push_back(std::async(std::launch::async, [&event, &begun, timeoutMs] {
            begun.count_down();
            return event.Wait(timeoutMs);
        }));
    }
    begun.wait();
    meanwhile();
    return std::count_if(waiters.begin(), waiters.end(), [](auto& waiter) { return waiter.get(); });
}

TEST(EventObjectTest, DefinesAPollingIntervalOf200Milliseconds)
{
    EXPECT_EQ(EventObject::s_uMinSlice, 200u);
}

TEST(EventObjectTest, StartsInTheRequestedState)
{
    EventObject quiet(c_autoReset, !c_signalled);
    EventObject signalled(!c_autoReset, c_signalled);

    EXPECT_FALSE(quiet.Wait(0));
    EXPECT_TRUE(signalled.Wait(0));
}

TEST(EventObjectTest, ReportsASignalOnceWithAutoReset)
{
    EventObject event(c_autoReset, !c_signalled);

    event.Signal();
    event.Signal();
    EXPECT_TRUE(event.Wait(0));
    EXPECT_FALSE(event.Wait(0));
}

TEST(EventObjectTest, ReportsAnInitialSignalOnceWithAutoReset)
{
    EventObject event(c_autoReset, c_signalled);

    EXPECT_TRUE(event.Wait(1000));
    EXPECT_FALSE(event.Wait(0));
}

TEST(EventObjectTest, ReportsASignalUntilResetWithManualReset)
{
    EventObject event(!c_autoReset, !c_signalled);

    event.Signal();
    EXPECT_TRUE(event.Wait(0));
    EXPECT_TRUE(event.Wait(0));
    event.Reset();
    EXPECT_FALSE(event.Wait(0));
}

TEST(EventObjectTest, CanBeSignalledAgainAfterAReset)
{
    EventObject event(c_autoReset, c_signalled);

    event.Reset();
    EXPECT_FALSE(event.Wait(0));
    event.Signal();
    EXPECT_TRUE(event.Wait(0));
}

TEST(EventObjectTest, ReturnsFalseAfterTheTimeout)
{
    EventObject event(c_autoReset, !c_signalled);

    for (const unsigned int timeoutMs : {1u, 200u, 250u}) {
        SCOPED_TRACE(timeoutMs);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_FALSE(event.Wait(timeoutMs));
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(timeoutMs));
    }
}

TEST(EventObjectTest, NeverSleepsWithAZeroTimeout)
{
    EventObject event(c_autoReset, !c_signalled);

    auto fastest = std::chrono::steady_clock::duration::max();
    for (int attempt = 0; attempt < 20; ++attempt) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_FALSE(event.Wait(0));
        fastest = std::min(fastest, std::chrono::steady_clock::now() - start);
    }
    EXPECT_LT(fastest, std::chrono::milliseconds(1));
}

TEST(EventObjectTest, ReleasesOneOfSeveralWaitersWithAutoReset)
{
    EventObject event(c_autoReset, !c_signalled);

    EXPECT_EQ(CountWaitersThatSee(event, 4, 600, [&event] { event.Signal(); }), 1);
}

TEST(EventObjectTest, ChecksOnceMoreWhenTheTimeoutEnds)
{
    EventObject event(c_autoReset, !c_signalled);
    const auto signalDuringTheOnlySlice = [&event] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        event.Signal();
    };

    // Retries, because on a busy machine the signal may come too late.
    long seen = 0;
    for (int attempt = 0; attempt < 10 && seen == 0; ++attempt) {
        event.Reset();
        seen = CountWaitersThatSee(event, 1, 150, signalDuringTheOnlySlice);
    }
    EXPECT_EQ(seen, 1);
}

TEST(EventObjectTest, ReleasesAllWaitersWithManualReset)
{
    EventObject event(!c_autoReset, !c_signalled);

    EXPECT_EQ(CountWaitersThatSee(event, 4, 0xFFFFFFFF, [&event] { event.Signal(); }), 4);
}

TEST(EventObjectTest, DoesNotLoseSignalsOfConcurrentThreads)
{
    constexpr int rounds = 20000;
    EventObject event(c_autoReset, !c_signalled);
    std::atomic<int> produced{0};

    // The waiter polls only every 200 ms, so the event is usually already signalled.
    const auto produce = [&event, &produced] {
        for (int i = 0; i < rounds; ++i) {
            produced.fetch_add(1, std::memory_order_relaxed);
            event.Signal();
        }
    };
    std::thread first(produce);
    std::thread second(produce);
    int seen = 0;
    while (seen < 2 * rounds && event.Wait(10000))
        seen = produced.load(std::memory_order_relaxed);
    first.join();
    second.join();

    EXPECT_EQ(seen, 2 * rounds);
}

TEST(EventObjectTest, MakesEarlierWritesVisibleToTheWaiter)
{
    EventObject event(c_autoReset, !c_signalled);
    EventObject answer(c_autoReset, !c_signalled);
    int value = 0; // synchronised only by the events

    std::thread writer([&] {
        for (int i = 1; i <= 100; ++i) {
            value = i;
            event.Signal();
            while (!answer.Wait(0)) {
            }
        }
    });
    for (int i = 1; i <= 100; ++i) {
        while (!event.Wait(0)) {
        }
        EXPECT_EQ(value, i);
        answer.Signal();
    }
    writer.join();
}

} // namespace
} // namespace Toolkit
