#include "toolkit/base/FileLock.h"

#include "toolkit/base/FileDescriptor.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace Toolkit::Base {
namespace {

class FileLockTest : public testing::Test {
protected:
    FileDescriptor OpenFile() const
    {
        return FileDescriptor::OpenRegular((m_directory.Path() / "lock").string(), O_RDWR | O_CREAT,
                                           0600);
    }

    FileLock Lock() const { return FileLock(OpenFile()); }

    TestSupport::TempDir m_directory;
};

TEST_F(FileLockTest, IsSharedWithinAProcess)
{
    const FileLock first = Lock();
    const FileLock second = Lock();
    EXPECT_EQ(first.GetState(), FileLock::State::Held);
    EXPECT_EQ(second.GetState(), FileLock::State::Held);
}

TEST_F(FileLockTest, IsUnavailableWithoutAFile)
{
    EXPECT_EQ(FileLock(FileDescriptor()).GetState(), FileLock::State::Unavailable);
}

TEST_F(FileLockTest, IsUnavailableWhenOutOfDescriptors)
{
    const FileLock first = Lock();
    FileDescriptor file = OpenFile();
    rlimit oldLimit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &oldLimit), 0);
    const rlimit none{0, oldLimit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);

    const FileLock second(std::move(file));
    ::setrlimit(RLIMIT_NOFILE, &oldLimit);

    EXPECT_EQ(second.GetState(), FileLock::State::Unavailable);
}

TEST_F(FileLockTest, IsHeldWhileAnotherThreadAcquiresAndReleasesIt)
{
    std::atomic<bool> stop{false};
    std::thread other([&] {
        while (!stop) {
            const FileLock lock = Lock();
        }
    });
    int failures = 0;
    for (int i = 0; i < 2000; ++i)
        failures += Lock().GetState() == FileLock::State::Held ? 0 : 1;
    stop = true;
    other.join();
    EXPECT_EQ(failures, 0);
}

// Forks a child, then exits while holding the lock. The child writes its process ID to `output` and
// keeps running.
[[noreturn]] void HoldLockForkAndExit(const FileLock& lock, int output)
{
    if (lock.GetState() != FileLock::State::Held)
        ::_exit(1);
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr unsigned int maxLifetimeS = 60;
        ::alarm(maxLifetimeS);
        const pid_t self = ::getpid();
        static_cast<void>(!::write(output, &self, sizeof self));
        for (;;)
            ::pause();
    }
    ::_exit(0);
}

TEST_F(FileLockTest, IsReleasedAtProcessExitDespiteAForkedChild)
{
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t holder = ::fork();
    if (holder == 0)
        HoldLockForkAndExit(Lock(), ends[1]);

    pid_t child = 0;
    ASSERT_EQ(::read(ends[0], &child, sizeof child), static_cast<ssize_t>(sizeof child));
    int status = -1;
    ::waitpid(holder, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Lock().GetState(), FileLock::State::Held);
    ::kill(child, SIGKILL);
    ::close(ends[0]);
    ::close(ends[1]);
}

} // namespace
} // namespace Toolkit::Base
