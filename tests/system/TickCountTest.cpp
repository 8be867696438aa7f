#include "toolkit/system/TickCount.h"

#include <gtest/gtest.h>

#include <chrono>
#include <latch>
#include <sys/times.h>
#include <thread>
#include <vector>

namespace Toolkit {
namespace {

constexpr unsigned int c_tickMs = 10; // sysconf(_SC_CLK_TCK) is 100

TEST(TickCountTest, ReturnsTheSystemTicksInMilliseconds)
{
    const unsigned int before = GetTickCount();
    tms processTimes{};
    const auto expected = static_cast<unsigned int>(::times(&processTimes)) * c_tickMs;
    const unsigned int after = GetTickCount();

    EXPECT_LE(expected - before, after - before);
}

TEST(TickCountTest, AgreesWithTheSteadyClock)
{
    constexpr unsigned int spanMs = 200;
    const auto outerStart = std::chrono::steady_clock::now();
    const unsigned int first = GetTickCount();
    const auto innerStart = std::chrono::steady_clock::now();
    auto innerEnd = innerStart;
    unsigned int last = first;

    while (last - first < spanMs) {
        innerEnd = std::chrono::steady_clock::now();
        last = GetTickCount();
    }
    const auto outerEnd = std::chrono::steady_clock::now();

    // The partial tick at either end may or may not be counted.
    const std::chrono::milliseconds counted(last - first);
    const std::chrono::milliseconds tolerance(2 * c_tickMs);
    EXPECT_LE(counted, outerEnd - outerStart + tolerance);
    EXPECT_GE(counted, innerEnd - innerStart - tolerance);
}

TEST(TickCountTest, UsesOneClockForAllThreads)
{
    constexpr int threadCount = 8;
    std::latch start(threadCount);
    std::vector<unsigned int> counts(threadCount);
    std::vector<std::thread> threads;
    const unsigned int before = GetTickCount();

    for (unsigned int& count : counts) {
        threads.emplace_back([&count, &start] {
            start.arrive_and_wait();
            count = GetTickCount();
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    const unsigned int after = GetTickCount();
    for (const unsigned int count : counts)
        EXPECT_LE(count - before, after - before);
}

} // namespace
} // namespace Toolkit
