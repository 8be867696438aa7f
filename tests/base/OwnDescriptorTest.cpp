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

constexpr unsigned int c_longestChildS = 10;

// Returns whether `check` succeeds in a forked child that ends in time.
bool HoldsInChild(const std::function<bool()>& check)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(c_longestChildS);
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

TEST_F(OwnDescriptorTest, IsOfTheNullDeviceInAChild)
{
    OwnDescriptor own;
    own.Watch(m_file.Get());

    EXPECT_TRUE(HoldsInChild([this] {
        struct stat there {};
        struct stat null {};
        return ::fstat(m_file.Get(), &there) == 0 && ::stat("/dev/null", &null) == 0 &&
               there.st_rdev == null.st_rdev && (::fcntl(m_file.Get(), F_GETFD) & FD_CLOEXEC) != 0;
    }));
    EXPECT_TRUE(IsRegular(m_file.Get()));
}

TEST_F(OwnDescriptorTest, IsSharedWhenItIsForgotten)
{
    OwnDescriptor own;
    own.Watch(m_file.Get());
    own.Forget();

    EXPECT_TRUE(HoldsInChild([this] { return IsRegular(m_file.Get()); }));
}

TEST_F(OwnDescriptorTest, IsSharedWhenTheWatchIsDestroyed)
{
    OwnDescriptor first;
    {
        OwnDescriptor own;
        own.Watch(m_file.Get());
    }
    EXPECT_TRUE(HoldsInChild([this] { return IsRegular(m_file.Get()); }));
}

TEST_F(OwnDescriptorTest, WatchesAnotherInsteadOfTheFirst)
{
    const FileDescriptor other = m_file.Duplicate();
    OwnDescriptor own;
    own.Watch(m_file.Get());
    own.Watch(other.Get());

    EXPECT_TRUE(HoldsInChild([&] { return IsRegular(m_file.Get()) && !IsRegular(other.Get()); }));
}

TEST_F(OwnDescriptorTest, DoesNotWatchAMissingDescriptor)
{
    OwnDescriptor own;
    own.Watch(-1);

    EXPECT_TRUE(HoldsInChild([this] { return IsRegular(m_file.Get()); }));
}

TEST_F(OwnDescriptorTest, WatchesAChildsOwnWhileThreadsOfItsParentDo)
{
    std::atomic<bool> stop{false};
    std::thread watcher([&] {
        while (!stop) {
            OwnDescriptor own;
            own.Watch(m_file.Get());
        }
    });
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(HoldsInChild([this] {
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
