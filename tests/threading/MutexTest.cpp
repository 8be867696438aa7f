#include "toolkit/threading/Mutex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace Toolkit {
namespace {

// Locks a mutex on another thread. The destructor unlocks it.
class OtherOwner {
public:
    explicit OtherOwner(MutexInternal& mutex)
        : m_thread([this, &mutex] {
              mutex.Lock(MutexInternal::Infinite);
              m_locked.set_value();
              m_release.get_future().wait();
              mutex.Unlock();
          })
    {
        m_locked.get_future().wait();
    }
    ~OtherOwner()
    {
        m_release.set_value();
        m_thread.join();
    }

private:
    std::promise<void> m_locked;
    std::promise<void> m_release;
    std::thread m_thread;
};

bool TryLockOnOtherThread(MutexInternal& mutex)
{
    return std::async(std::launch::async,
                      [&mutex] {
                          const bool locked = mutex.Lock(0);
                          if (locked)
                              mutex.Unlock();
                          return locked;
                      })
        .get();
}

TEST(MutexTest, CanBeConstructedUnlocked)
{
    Mutex mutex(false);

    EXPECT_TRUE(TryLockOnOtherThread(mutex));
}

TEST(MutexTest, CanBeConstructedLocked)
{
    Mutex mutex(true);

    EXPECT_FALSE(TryLockOnOtherThread(mutex));
    EXPECT_TRUE(mutex.Unlock());
}

TEST(MutexTest, FailsWithAZeroTimeoutWhileLocked)
{
    Mutex mutex(false);
    const OtherOwner owner(mutex);

    EXPECT_FALSE(mutex.Lock(0));
}

TEST(MutexTest, SleepsAfterEachAttemptWithAFiniteTimeout)
{
    Mutex mutex(false);
    const OtherOwner owner(mutex);

    const auto start = std::chrono::steady_clock::now();
    // Three attempts, each followed by a sleep of 10 ms.
    EXPECT_FALSE(mutex.Lock(25));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
}

TEST(MutexTest, NeverSleepsWithATimeoutBelowTenMilliseconds)
{
    Mutex mutex(false);
    const OtherOwner owner(mutex);

    auto fastest = std::chrono::steady_clock::duration::max();
    for (int attempt = 0; attempt < 20; ++attempt) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_FALSE(mutex.Lock(9));
        fastest = std::min(fastest, std::chrono::steady_clock::now() - start);
    }
    EXPECT_LT(fastest, std::chrono::milliseconds(10));
}

TEST(MutexTest, LocksAFreeMutexWithAFiniteTimeout)
{
    Mutex mutex(false);

    EXPECT_TRUE(mutex.Lock(10));
    EXPECT_FALSE(TryLockOnOtherThread(mutex));
    EXPECT_TRUE(mutex.Unlock());
}

TEST(MutexTest, WaitsUntilTheOwnerUnlocks)
{
    for (const unsigned int timeoutMs : {600000u, MutexInternal::Infinite}) {
        SCOPED_TRACE(timeoutMs);
        Mutex mutex(false);
        std::optional<OtherOwner> owner(mutex);

        auto locked = std::async(std::launch::async, [&mutex, timeoutMs] {
            return mutex.Lock(timeoutMs) && mutex.Unlock();
        });
        EXPECT_EQ(locked.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
        owner.reset();
        EXPECT_TRUE(locked.get());
    }
}

TEST(MutexTest, LetsTheOwnerLockAgainWithAnyTimeout)
{
    Mutex mutex(true);

    for (const unsigned int timeoutMs : {0u, 9u, 10u, 1000u, MutexInternal::Infinite}) {
        SCOPED_TRACE(timeoutMs);
        EXPECT_TRUE(mutex.Lock(timeoutMs));
    }
    for (int i = 0; i < 6; ++i)
        EXPECT_TRUE(mutex.Unlock());
}

TEST(MutexTest, StaysLockedUntilUnlockedAsOftenAsLocked)
{
    Mutex mutex(true);
    ASSERT_TRUE(mutex.Lock(0));

    EXPECT_TRUE(mutex.Unlock());
    EXPECT_FALSE(TryLockOnOtherThread(mutex));
    EXPECT_TRUE(mutex.Unlock());
    EXPECT_TRUE(TryLockOnOtherThread(mutex));
}

TEST(MutexTest, CanBeUnlockedOnlyByItsOwner)
{
    Mutex mutex(false);

    EXPECT_FALSE(mutex.Unlock());
    const OtherOwner owner(mutex);
    EXPECT_FALSE(mutex.Unlock());
}

TEST(MutexTest, IsHeldByOneThreadAtATime)
{
    constexpr int rounds = 10000;
    Mutex mutex(false);
    int counter = 0;

    const auto count = [&mutex, &counter] {
        for (int i = 0; i < rounds; ++i) {
            const MutexLocker locker(mutex, MutexInternal::Infinite);
            ++counter;
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(count);
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(counter, 4 * rounds);
}

TEST(MutexTest, IsDestroyedSilentlyWhileLocked)
{
    testing::internal::CaptureStderr();
    {
        Mutex mutex(true);
        mutex.Lock(0);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(MutexTest, IsDestroyedSilentlyAfterItsOwnerHasEnded)
{
    testing::internal::CaptureStderr();
    {
        Mutex mutex(false);
        std::thread([&mutex] { mutex.Lock(MutexInternal::Infinite); }).join();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(MutexTest, IsFreeWhenCreatedAfterALockedMutexIsDestroyed)
{
    for (int i = 0; i < 20; ++i) {
        {
            Mutex heldTwice(true);
            heldTwice.Lock(0);
            Mutex heldByAnEndedThread(false);
            std::thread([&] { heldByAnEndedThread.Lock(MutexInternal::Infinite); }).join();
        }
        Mutex mutex(false);
        Mutex another(false);

        EXPECT_TRUE(TryLockOnOtherThread(mutex));
        EXPECT_TRUE(TryLockOnOtherThread(another));
    }
}

TEST(MutexTest, CanBeCreatedAndLockedOnSeveralThreadsAtOnce)
{
    const auto createAndLock = [] {
        int successes = 0;
        for (int round = 0; round < 2000; ++round) {
            Mutex first(false);
            Mutex second(true);
            successes += first.Lock(0) && second.Lock(0) ? 1 : 0;
            first.Unlock();
        }
        return successes;
    };
    std::vector<std::future<int>> threads;
    for (int i = 0; i < 4; ++i)
        threads.push_back(std::async(std::launch::async, createAndLock));

    for (std::future<int>& thread : threads)
        EXPECT_EQ(thread.get(), 2000);
}

TEST(MutexTest, RejectsConcurrentUnlocksByAnotherThread)
{
    Mutex mutex(false);
    std::atomic<bool> isOver = false;
    auto other = std::async(std::launch::async, [&] {
        int unlocked = 0;
        while (!isOver)
            unlocked += mutex.Unlock() ? 1 : 0;
        return unlocked;
    });

    for (int round = 0; round < 20000; ++round) {
        ASSERT_TRUE(mutex.Lock(MutexInternal::Infinite));
        ASSERT_TRUE(mutex.Unlock());
    }
    isOver = true;

    EXPECT_EQ(other.get(), 0);
    EXPECT_FALSE(mutex.Unlock());
}

TEST(MutexLockerTest, HoldsTheMutexForItsScope)
{
    Mutex mutex(false);

    {
        const MutexLocker locker(mutex, MutexInternal::Infinite);
        EXPECT_FALSE(TryLockOnOtherThread(mutex));
    }
    EXPECT_TRUE(TryLockOnOtherThread(mutex));
}

TEST(MutexLockerTest, DoesNotUnlockAfterAFailedLock)
{
    Mutex mutex(false);
    std::optional<OtherOwner> owner(mutex);

    std::optional<MutexLocker> locker(std::in_place, mutex, 0u);
    owner.reset();
    ASSERT_TRUE(mutex.Lock(MutexInternal::Infinite));
    locker.reset();

    EXPECT_FALSE(TryLockOnOtherThread(mutex));
    EXPECT_TRUE(mutex.Unlock());
}

} // namespace
} // namespace Toolkit
