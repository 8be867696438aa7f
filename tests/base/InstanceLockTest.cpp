#include "toolkit/base/InstanceLock.h"

#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace Toolkit::Base {
namespace {

using State = InstanceLock::State;

int GetStateInAnotherProcess()
{
    const pid_t child = ::fork();
    if (child == 0)
        std::_Exit(static_cast<int>(InstanceLock(L"name").GetState()));
    int status = 0;
    ::waitpid(child, &status, 0);
    return WEXITSTATUS(status);
}

// Exits with 0 if this process acquires the lock and another process then cannot. Drops root
// privileges first, because root can write to read-only files.
[[noreturn]] void LockAsAnOrdinaryUser()
{
    constexpr uid_t nobody = 65534;
    if (::getuid() == 0 && ::setuid(nobody) != 0)
        std::_Exit(1);
    const InstanceLock lock(L"name");
    if (lock.GetState() != State::Held)
        std::_Exit(2);
    std::_Exit(GetStateInAnotherProcess() == static_cast<int>(State::HeldElsewhere) ? 0 : 3);
}

TEST(InstanceLockTest, IsUnavailableForANameThatUtf8CannotEncode)
{
    const TestSupport::TempDir home;
    const TestSupport::ScopedEnvironment environment("HOME", home.Path());

    EXPECT_EQ(InstanceLock(std::wstring(1, static_cast<wchar_t>(-1))).GetState(),
              State::Unavailable);
    EXPECT_TRUE(std::filesystem::is_empty(home.Path()));
}

TEST(InstanceLockDeathTest, LocksAReadOnlyFile)
{
    const TestSupport::TempDir home;
    const TestSupport::ScopedEnvironment environment("HOME", home.Path());
    home.WriteFile(L".name.lock", "");
    std::filesystem::permissions(home.Path() / ".name.lock", std::filesystem::perms(0444));
    std::filesystem::permissions(home.Path(), std::filesystem::perms(0555));

    EXPECT_EXIT(LockAsAnOrdinaryUser(), testing::ExitedWithCode(0), "");

    std::filesystem::permissions(home.Path(), std::filesystem::perms(0700));
}

} // namespace
} // namespace Toolkit::Base
