#include "toolkit/threading/Thread.h"

#include "support/OutOfMemory.h"
#include "support/Sanitizers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <future>
#include <latch>
#include <memory>
#include <pthread.h>
#include <semaphore>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using TestSupport::FailingAllocation;

class Worker : public Thread {
public:
    explicit Worker(std::function<int(Worker&)> work) : m_work(std::move(work)) {}
    ~Worker() override { Wait(); }

private:
    int DoWork() override { return m_work(*this); }

    std::function<int(Worker&)> m_work;
};

int DoNothing(Worker&)
{
    return 0;
}

void AwaitEnd(const Thread& thread)
{
    while (thread.IsRunning())
        Thread::Sleep(1);
}

// Starts a thread that returns `result` and waits for it. Retries, since Wait() returns no result
// for a thread that ends before the call.
std::intptr_t RunAndGetResult(int result)
{
    for (int attempt = 0; attempt < 1000; ++attempt) {
        std::latch release(1);
        Worker worker([&release, result](Worker&) {
            release.wait();
            return result;
        });
        worker.Run();
        release.count_down();
        if (const auto code = reinterpret_cast<std::intptr_t>(worker.Wait()))
            return code;
    }
    return 0;
}

long GetAddressSpaceInPages()
{
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages;
}

// Makes new threads request a larger stack than any system has, until the object is destroyed.
class HugeThreadStacks {
public:
    HugeThreadStacks()
    {
        constexpr std::size_t tooMuch = std::size_t{1} << 50;
        pthread_attr_t attributes;
        ::pthread_getattr_default_np(&m_oldAttributes);
        ::pthread_getattr_default_np(&attributes);
        EXPECT_EQ(::pthread_attr_setstacksize(&attributes, tooMuch), 0);
        EXPECT_EQ(::pthread_setattr_default_np(&attributes), 0);
        ::pthread_attr_destroy(&attributes);
    }
    ~HugeThreadStacks()
    {
        ::pthread_setattr_default_np(&m_oldAttributes);
        ::pthread_attr_destroy(&m_oldAttributes);
    }

private:
    pthread_attr_t m_oldAttributes;
};

TEST(ThreadTest, DefinesUndefinedThreadAs0xFFFFFFFF)
{
    EXPECT_EQ(Thread::UndefinedThread, 0xFFFFFFFFul);
}

TEST(ThreadTest, RunsDoWorkOnItsOwnThread)
{
    unsigned long id = Thread::GetCurrentId();
    unsigned long ownId = 0;
    bool isMain = true;
    {
        Worker worker([&](Worker& self) {
            id = Thread::GetCurrentId();
            ownId = self.GetId();
            isMain = Thread::IsMainThread();
            return 0;
        });
        EXPECT_TRUE(worker.Run());
    }

    EXPECT_NE(id, Thread::GetCurrentId());
    EXPECT_EQ(id, ownId);
    EXPECT_FALSE(isMain);
    EXPECT_TRUE(Thread::IsMainThread());
}

TEST(ThreadTest, ReturnsTheResultOfDoWorkFromWait)
{
    EXPECT_EQ(RunAndGetResult(42), 42);
    EXPECT_EQ(RunAndGetResult(-1), -1);
}

TEST(ThreadTest, ReturnsNullFromWaitBeforeRun)
{
    Worker worker(DoNothing);

    EXPECT_EQ(worker.Wait(), nullptr);
    EXPECT_FALSE(worker.IsRunning());
}

TEST(ThreadTest, ReturnsNullFromWaitAfterTheThreadEnds)
{
    Worker worker([](Worker&) { return 42; });
    worker.Run();
    AwaitEnd(worker);

    EXPECT_EQ(worker.Wait(), nullptr);
}

TEST(ThreadTest, IsRunningUntilItsWorkIsDone)
{
    std::latch release(1);
    Worker worker([&release](Worker&) {
        release.wait();
        return 0;
    });

    EXPECT_FALSE(worker.IsRunning());
    worker.Run();
    EXPECT_TRUE(worker.IsRunning());
    release.count_down();
    worker.Wait();
    EXPECT_FALSE(worker.IsRunning());
}

TEST(ThreadTest, StartsOnlyOnce)
{
    std::atomic<int> calls{0};
    Worker worker([&calls](Worker&) { return ++calls; });

    EXPECT_TRUE(worker.Run());
    EXPECT_FALSE(worker.Run());
    AwaitEnd(worker);
    EXPECT_FALSE(worker.Run());
    EXPECT_EQ(calls, 1);
}

// Works until it is asked to end, by which time the members of this class are destroyed.
class BusyThread : public Thread {
public:
    BusyThread(std::latch& begun, std::atomic<bool>& done) : m_begun(begun), m_done(done) {}

private:
    int DoWork() override
    {
        Thread* const self = this;
        std::atomic<bool>& done = m_done;
        m_begun.count_down();
        while (!self->Thread::TestDestroy()) {
        }
        done = true;
        return 0;
    }
    std::latch& m_begun;
    std::atomic<bool>& m_done;
};

TEST(ThreadTest, WaitsForTheWorkWhenDestroyed)
{
    std::latch begun(1);
    std::atomic<bool> done{false};

    {
        BusyThread thread(begun, done);
        thread.Run();
        begun.wait();
    }
    EXPECT_TRUE(done);
}

TEST(ThreadTest, EndsWhenDestroyedWhilePaused)
{
    std::latch begun(1);
    std::atomic<bool> done{false};

    {
        BusyThread thread(begun, done);
        thread.Run();
        begun.wait();
        EXPECT_TRUE(thread.Pause());
    }
    EXPECT_TRUE(done);
}

TEST(ThreadTest, EndsWhenDestroyedWhileAboutToPause)
{
    for (int i = 0; i < 300; ++i) {
        std::latch begun(1);
        std::atomic<bool> done{false};
        {
            BusyThread thread(begun, done);
            thread.Run();
            begun.wait();
            thread.Pause();
        }
        EXPECT_TRUE(done);
    }
}

TEST(ThreadTest, CanBeDestroyedWithoutRunning)
{
    bool worked = false;
    for (int i = 0; i < 100; ++i) {
        const Worker worker([&worked](Worker&) {
            worked = true;
            return 0;
        });
    }
    EXPECT_FALSE(worked);
}

TEST(ThreadTest, ReleasesItsStackWhenItEnds)
{
    constexpr int threads = 300;
    // A thread's stack takes 8 MiB by default.
    const long stackInPages = 8L * 1024 * 1024 / ::sysconf(_SC_PAGESIZE);
    const long before = GetAddressSpaceInPages();

    for (int i = 0; i < threads; ++i) {
        Worker worker(DoNothing);
        worker.Run();
        AwaitEnd(worker);
    }
    EXPECT_LT(GetAddressSpaceInPages() - before, threads * stackInPages / 2);
}

TEST(ThreadTest, PausesAndResumes)
{
    std::atomic<bool> stop{false};
    std::atomic<int> rounds{0};
    Worker worker([&](Worker& self) {
        while (!stop) {
            ++rounds;
            self.TestDestroy();
        }
        return 0;
    });
    worker.Run();

    EXPECT_TRUE(worker.Pause());
    EXPECT_TRUE(worker.IsPaused());
    EXPECT_TRUE(worker.IsRunning());
    EXPECT_TRUE(worker.Resume());
    EXPECT_FALSE(worker.IsPaused());
    const int before = rounds;
    while (rounds == before)
        Thread::Sleep(1);
    stop = true;
}

TEST(ThreadTest, CannotPauseOrResumeUnlessRunning)
{
    testing::internal::CaptureStderr();
    Worker worker(DoNothing);

    EXPECT_FALSE(worker.Pause());
    EXPECT_FALSE(worker.Resume());
    worker.Run();
    AwaitEnd(worker);
    EXPECT_FALSE(worker.Pause());
    EXPECT_FALSE(worker.Resume());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ThreadTest, CanBeKilledWhileRunning)
{
    std::latch begun(1);
    Worker worker([&begun](Worker&) {
        begun.count_down();
        while (true)
            ::pause();
        return 0;
    });
    worker.Run();
    begun.wait();

    EXPECT_EQ(worker.Kill(), wxTHREAD_NO_ERROR);
    AwaitEnd(worker);
}

std::atomic<int> g_slowDestructorCalls{0};

// Has a slow destructor, so that the test detects a caller that does not wait for it. The
// destructor may sleep on a killed thread, because cancellation points have no effect while the
// thread unwinds.
struct SlowDestructor {
    ~SlowDestructor()
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        ++g_slowDestructorCalls;
    }
};

// Uses no member once it has begun, because the members are destroyed before the thread ends.
class Endless : public Thread {
public:
    explicit Endless(std::latch& begun) : m_begun(begun) {}

private:
    int DoWork() override
    {
        const SlowDestructor local;
        m_begun.count_down();
        while (true)
            ::pause();
        return 0;
    }

    std::latch& m_begun;
};

TEST(ThreadTest, WaitsForTheDestructorsOfAKilledThread)
{
    std::latch begun(1);
    Endless thread(begun);
    thread.Run();
    begun.wait();
    const int before = g_slowDestructorCalls;

    EXPECT_EQ(thread.Kill(), wxTHREAD_NO_ERROR);
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(thread.Wait()), -1);
    EXPECT_EQ(g_slowDestructorCalls, before + 1);
}

TEST(ThreadTest, IsDestroyedAfterTheLocalsOfItsKilledThread)
{
    const int before = g_slowDestructorCalls;
    {
        std::latch begun(1);
        Endless thread(begun);
        thread.Run();
        begun.wait();
        EXPECT_EQ(thread.Kill(), wxTHREAD_NO_ERROR);
    }

    EXPECT_EQ(g_slowDestructorCalls, before + 1);
}

TEST(ThreadTest, IsDestroyedAfterItsThreadLocalObjects)
{
    const int before = g_slowDestructorCalls;
    {
        Worker worker([](Worker&) {
            thread_local const SlowDestructor object;
            static_cast<void>(&object);
            return 0;
        });
        worker.Run();
        AwaitEnd(worker);
        EXPECT_EQ(worker.Wait(), nullptr);
    }

    EXPECT_EQ(g_slowDestructorCalls, before + 1);
}

std::counting_semaphore<1> g_mayEndDestructor{0};
std::atomic<bool> g_wasReleased{false};

struct BlockingDestructor {
    ~BlockingDestructor()
    {
        g_wasReleased = g_mayEndDestructor.try_acquire_for(std::chrono::seconds(20));
    }
};

TEST(ThreadTest, ReturnsFromWaitAtOnceWhenDoWorkHasEnded)
{
    {
        Worker worker([](Worker&) {
            thread_local const BlockingDestructor object;
            static_cast<void>(&object);
            return 0;
        });
        worker.Run();
        AwaitEnd(worker);

        EXPECT_EQ(worker.Wait(), nullptr);
        g_mayEndDestructor.release();
    }
    EXPECT_TRUE(g_wasReleased);
}

// ThreadSanitizer misses the locks of a cancelled thread and the ordering that they establish. It
// also reports that wxWidgets reads the vtable pointer of an object that is being destroyed.
#ifndef TOOLKIT_THREAD_SANITIZER

// Kills a thread as soon as it has started. Returns 0 on success.
int KillAtStart(bool throughBase)
{
    Worker worker([](Worker&) {
        while (true)
            ::pause();
        return 0;
    });
    wxThread& base = worker;
    worker.Run();
    const wxThreadError result = throughBase ? base.Kill() : worker.Kill();
    AwaitEnd(worker);
    return result == wxTHREAD_NO_ERROR ? 0 : 1;
}

// wxWidgets ends a process that cancels a thread before the thread reaches Entry(). Usually only
// the first thread of a process is slow enough to show this, so each attempt needs a new process.
TEST(ThreadDeathTest, CanBeKilledBeforeItsWorkBegins)
{
    for (int i = 0; i < 20; ++i)
        EXPECT_EXIT(::_exit(KillAtStart(false)), testing::ExitedWithCode(0), "^$");
}

TEST(ThreadDeathTest, CanBeKilledThroughWxThreadBeforeItsWorkBegins)
{
    for (int i = 0; i < 20; ++i)
        EXPECT_EXIT(::_exit(KillAtStart(true)), testing::ExitedWithCode(0), "^$");
}

// Has no destructor that waits for the thread, and no members that the thread could use after their
// destruction.
class Unattended : public Thread {
private:
    int DoWork() override
    {
        while (!TestDestroy())
            Sleep(1);
        return 0;
    }
};

TEST(ThreadDeathTest, CanBeDestroyedBeforeItsWorkBegins)
{
    const auto startAndDestroy = [](bool throughBase) {
        for (int i = 0; i < 5; ++i) {
            Unattended thread;
            wxThread& base = thread;
            throughBase ? static_cast<void>(base.Run()) : static_cast<void>(thread.Run());
        }
        ::_exit(0);
    };

    EXPECT_EXIT(startAndDestroy(false), testing::ExitedWithCode(0), "^$");
    EXPECT_EXIT(startAndDestroy(true), testing::ExitedWithCode(0), "^$");
}
#endif

TEST(ThreadTest, CannotBeKilledUnlessRunning)
{
    Worker worker(DoNothing);

    EXPECT_EQ(worker.Kill(), wxTHREAD_NOT_RUNNING);
    worker.Run();
    AwaitEnd(worker);
    EXPECT_EQ(worker.Kill(), wxTHREAD_NOT_RUNNING);
}

// Calls `operation` on a new thread with the object of that thread, and returns the result.
template <typename Result>
Result CallOnItself(Result (*operation)(Worker&))
{
    std::promise<Result> result;
    Worker worker([&](Worker& self) {
        result.set_value(operation(self));
        return 0;
    });
    worker.Run();
    return result.get_future().get();
}

TEST(ThreadTest, CannotPauseResumeWaitForOrKillItself)
{
    testing::internal::CaptureStderr();

    EXPECT_FALSE(CallOnItself<bool>([](Worker& self) { return self.Pause(); }));
    EXPECT_FALSE(CallOnItself<bool>([](Worker& self) { return self.Resume(); }));
    EXPECT_EQ(CallOnItself<wxThread::ExitCode>([](Worker& self) { return self.Wait(); }), nullptr);
    EXPECT_EQ(CallOnItself<wxThreadError>([](Worker& self) { return self.Kill(); }),
              wxTHREAD_MISC_ERROR);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ThreadTest, StartsThroughWxThread)
{
    std::promise<unsigned long> id;
    Worker worker([&id](Worker&) {
        id.set_value(Thread::GetCurrentId());
        return 0;
    });
    wxThread& base = worker;

    EXPECT_EQ(base.Run(), wxTHREAD_NO_ERROR);
    EXPECT_FALSE(worker.Run());
    EXPECT_EQ(id.get_future().get(), worker.GetId());
}

TEST(ThreadTest, WorksOnlyOnceWhenStartedThroughWxThread)
{
    std::atomic<int> calls{0};
    for (int i = 0; i < 100; ++i) {
        Worker worker([&calls](Worker&) { return ++calls; });
        wxThread& base = worker;
        base.Run();
    }
    EXPECT_EQ(calls, 100);
}

// A thread class that lets any thread call the entry point.
class Direct : public Thread {
public:
    ~Direct() override { Wait(); }
    std::intptr_t Call() { return reinterpret_cast<std::intptr_t>(Entry()); }

private:
    int DoWork() override { return 42; }
};

TEST(ThreadTest, RunsDoWorkOnAnyThreadThatCallsEntry)
{
    Direct thread;

    EXPECT_EQ(thread.Call(), 42);
    EXPECT_EQ(std::async(std::launch::async, [&] { return thread.Call(); }).get(), 42);
    EXPECT_FALSE(thread.IsRunning());
    EXPECT_TRUE(thread.Run());
}

TEST(ThreadTest, DoesNotPauseAnotherThreadThatCallsTestDestroy)
{
    std::latch release(1);
    Worker worker([&release](Worker&) {
        release.wait();
        return 0;
    });
    worker.Run();
    worker.Pause();

    EXPECT_FALSE(worker.TestDestroy());
    release.count_down();
}

TEST(ThreadTest, CanBeDeletedWhilePaused)
{
    std::latch begun(1);
    Worker worker([&begun](Worker& self) {
        begun.count_down();
        while (!self.TestDestroy()) {
        }
        return 42;
    });
    worker.Run();
    begun.wait();
    worker.Pause();

    wxThread::ExitCode code = nullptr;
    EXPECT_EQ(worker.Delete(&code), wxTHREAD_NO_ERROR);
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(code), 42);
}

TEST(ThreadTest, CanBeKilledWhilePaused)
{
    std::latch begun(1);
    Worker worker([&begun](Worker& self) {
        begun.count_down();
        while (!self.TestDestroy()) {
        }
        return 0;
    });
    worker.Run();
    begun.wait();
    worker.Pause();

    EXPECT_EQ(worker.Kill(), wxTHREAD_NO_ERROR);
    AwaitEnd(worker);
}

TEST(ThreadTest, PausesAndResumesThroughWxThread)
{
    std::latch begun(1);
    std::atomic<int> rounds{0};
    Worker worker([&](Worker& self) {
        begun.count_down();
        while (!self.TestDestroy())
            ++rounds;
        return 0;
    });
    wxThread& base = worker;
    worker.Run();
    begun.wait();

    EXPECT_EQ(base.Pause(), wxTHREAD_NO_ERROR);
    EXPECT_TRUE(worker.IsPaused());
    EXPECT_EQ(base.Resume(), wxTHREAD_NO_ERROR);
    const int before = rounds;
    while (rounds == before)
        Thread::Sleep(1);
    base.Delete();
}

TEST(ThreadTest, DoesNotWorkWhilePaused)
{
    std::atomic<bool> isPaused{false};
    std::atomic<int> rounds{0};
    Worker worker([&](Worker& self) {
        while (!self.TestDestroy())
            rounds += isPaused ? 1 : 0;
        return 0;
    });
    worker.Run();
    EXPECT_TRUE(worker.Pause());
    Thread::Sleep(50);
    isPaused = true;
    Thread::Sleep(50);
    EXPECT_EQ(rounds, 0);
    worker.Delete();
}

TEST(ThreadTest, ReportsTheThreadOfMainAsTheMainThread)
{
    EXPECT_TRUE(Thread::IsMainThread());
    EXPECT_FALSE(std::async(std::launch::async, Thread::IsMainThread).get());
}

// Runs in a separate process, in which nothing has started wxWidgets.
TEST(ThreadDeathTest, KeepsTheMainThreadWhenCreatedOnAnotherThread)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            std::unique_ptr<Worker> worker;
            std::thread([&worker] { worker = std::make_unique<Worker>(DoNothing); }).join();
            const bool isMain = Thread::IsMainThread();
            worker.reset();
            ::_exit(isMain ? 0 : 1);
        },
        testing::ExitedWithCode(0), "^$");
}

// Starting a thread allocates memory at least this often. The thread does not start if one of these
// allocations fails.
constexpr int c_startAllocations = 20;

// The destructor starts a thread that never ran, so it needs memory.
TEST(ThreadTest, CanBeDestroyedWhenOutOfMemory)
{
    for (int index = 0; index < c_startAllocations; ++index) {
        auto worker = std::make_unique<Worker>(DoNothing);
        const FailingAllocation failing(index);
        worker.reset();
        EXPECT_TRUE(failing.HasFailed());
    }
}

std::atomic<bool> s_hasMemory{true};
thread_local bool t_isTested = false;

// Makes allocations fail on the tested thread only, because wxWidgets cannot handle running out of
// memory on other threads.
bool FailsOnTestedThread(const void*)
{
    return t_isTested && !s_hasMemory;
}

// The destructor tries for 200 ms to start the thread, then leaks it, which needs memory as well.
TEST(ThreadTest, IsDestroyedOnceMemoryIsAvailableAgain)
{
    auto worker = std::make_unique<Worker>(DoNothing);
    s_hasMemory = false;
    TestSupport::SetAllocationRule(FailsOnTestedThread);
    std::thread destroyer([&worker] {
        t_isTested = true;
        worker.reset();
    });
    Thread::Sleep(400);
    s_hasMemory = true;
    destroyer.join();
    TestSupport::SetAllocationRule(nullptr);

    EXPECT_EQ(worker, nullptr);
}

TEST(ThreadTest, CanStartOnceMemoryIsAvailableAgain)
{
    for (int index = 0; index < c_startAllocations; ++index) {
        std::atomic<int> calls{0};
        Worker worker([&calls](Worker&) { return ++calls; });
        {
            const FailingAllocation failing(index);
            EXPECT_FALSE(worker.Run());
        }
        EXPECT_FALSE(worker.IsRunning());
        EXPECT_EQ(calls, 0);
        EXPECT_TRUE(worker.Run());
    }
}

// Runs out of memory in Entry(), which first allocates for the log target.
class ThreadWithoutMemory : public Thread {
public:
    ~ThreadWithoutMemory() override { Wait(); }

    std::atomic<bool> hasWorked{false};
    std::atomic<bool> hasFailed{false};

private:
    ExitCode Entry() override
    {
        const FailingAllocation failing(0);
        const ExitCode code = Thread::Entry();
        hasFailed = failing.HasFailed();
        return code;
    }
    int DoWork() override
    {
        hasWorked = true;
        return 0;
    }
};

TEST(ThreadTest, WorksWhenOutOfMemoryForItsLogTarget)
{
    ThreadWithoutMemory thread;
    EXPECT_TRUE(thread.Run());
    thread.Wait();

    EXPECT_TRUE(thread.hasFailed);
    EXPECT_TRUE(thread.hasWorked);
}

TEST(ThreadTest, SleepsAtLeastTheGivenTime)
{
    const auto start = std::chrono::steady_clock::now();
    Thread::Sleep(20);

    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
}

TEST(ThreadTest, FailsToRunWhenNoThreadCanBeCreated)
{
    testing::internal::CaptureStderr();
    {
        const HugeThreadStacks hugeStacks;
        Worker worker(DoNothing);

        EXPECT_FALSE(worker.Run());
        EXPECT_FALSE(worker.IsRunning());
        EXPECT_EQ(worker.Wait(), nullptr);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace Toolkit
