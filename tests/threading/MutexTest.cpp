#include "toolkit/threading/Mutex.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace Toolkit {
namespace {

// Locks a mutex on a thread of its own until it is told to let go.
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
    return std::async(std::launch::async, [&mutex] {
               const bool locked = mutex.Lock(0);
               if (locked)
                   mutex.Unlock();
               return locked;
           }).get();
}

TEST(MutexTest, IsFreeAfterConstruction)
{
    Mutex mutex(false);

    EXPECT_TRUE(TryLockOnOtherThread(mutex));
}

TEST(MutexTest, ConstructionCanTakeTheLock)
{
    Mutex mutex(true);

    EXPECT_FALSE(TryLockOnOtherThread(mutex));
    EXPECT_TRUE(mutex.Unlock());
}

TEST(MutexTest, ZeroTimeoutOnABusyMutexFails)
{
    Mutex mutex(false);
    const OtherOwner owner(mutex);

    EXPECT_FALSE(mutex.Lock(0));
}

TEST(MutexTest, FiniteTimeoutOnABusyMutexSleepsAfterEachAttempt)
{
    Mutex mutex(false);
    const OtherOwner owner(mutex);

    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(mutex.Lock(25));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
}

} // namespace
} // namespace Toolkit
