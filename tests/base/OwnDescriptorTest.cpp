#include "toolkit/base/OwnDescriptor.h"

#include "toolkit/base/FileDescriptor.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace Toolkit::Base {
namespace {

constexpr unsigned int c_childTimeoutS = 10;

// Returns whether `check` succeeds in a forked child within c_childTimeoutS seconds.
bool SucceedsInChild(const std::function<bool()>& check)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(c_childTimeoutS);
        ::_exit(check() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool IsRegular(int descriptor)
{
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

class OwnDescriptorTest : public testing::Test {
protected:
    TestSupport::TempDir m_directory;
    FileDescriptor m_file =
        FileDescriptor::OpenRegular((m_directory.Path() / "file").string(), O_RDWR | O_CREAT, 0600);
};

TEST_F(OwnDescriptorTest, ReplacesTheFileWithTheNullDeviceInAChild)
{
    OwnDescriptor own;
    own.Watch(m_file.Get());

    EXPECT_TRUE(SucceedsInChild([this] {
        struct stat inChild {};
        struct stat nullDevice {};
        return ::fstat(m_file.Get(), &inChild) == 0 && ::stat("/dev/null", &nullDevice) == 0 &&
               inChild.st_rdev == nullDevice.st_rdev &&
               (::fcntl(m_file.Get(), F_GETFD) & FD_CLOEXEC) != 0;
    }));
    EXPECT_TRUE(IsRegular(m_file.Get()));
}

TEST_F(OwnDescriptorTest, LeavesTheFileSharedAfterForget)
{
    OwnDescriptor own;
    own.Watch(m_file.Get());
    own.Forget();

    EXPECT_TRUE(SucceedsInChild([this] { return IsRegular(m_file.Get()); }));
}

TEST_F(OwnDescriptorTest, LeavesTheFileSharedAfterItsDestruction)
{
    OwnDescriptor first;
    {
        OwnDescriptor own;
        own.Watch(m_file.Get());
    }
    EXPECT_TRUE(SucceedsInChild([this] { return IsRegular(m_file.Get()); }));
}

TEST_F(OwnDescriptorTest, WatchesOnlyTheLastDescriptor)
{
    const FileDescriptor other = m_file.Duplicate();
    OwnDescriptor own;
    own.Watch(m_file.Get());
    own.Watch(other.Get());

    EXPECT_TRUE(
        SucceedsInChild([&] { return IsRegular(m_file.Get()) && !IsRegular(other.Get()); }));
}

TEST_F(OwnDescriptorTest, IgnoresANegativeDescriptor)
{
    OwnDescriptor own;
    own.Watch(-1);

    EXPECT_TRUE(SucceedsInChild([this] { return IsRegular(m_file.Get()); }));
}

TEST_F(OwnDescriptorTest, CanWatchInAChildForkedWhileAnotherThreadWatches)
{
    std::atomic<bool> stop{false};
    std::thread watcher([&] {
        while (!stop) {
            OwnDescriptor own;
            own.Watch(m_file.Get());
        }
    });
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(SucceedsInChild([this] {
            OwnDescriptor own;
            own.Watch(m_file.Get());
            return true;
        }));
    }
    stop = true;
    watcher.join();
}

} // namespace
} // namespace Toolkit::Base
