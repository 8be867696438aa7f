#include "toolkit/system/InheritedDescriptors.Private.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace Toolkit {
namespace {

// Opens a descriptor that execv(3) would keep open. Exits with 0 if
// CloseInheritedDescriptorsOnExec() marks it to be closed on exec, but not standard input.
[[noreturn]] void CheckFlags()
{
    const int inherited = ::open("/dev/null", O_RDONLY);
    ::fcntl(STDIN_FILENO, F_SETFD, 0);
    CloseInheritedDescriptorsOnExec();
    const bool isClosed = ::fcntl(inherited, F_GETFD) == FD_CLOEXEC;
    const bool isInputKept = ::fcntl(STDIN_FILENO, F_GETFD) == 0;
    std::_Exit(isClosed && isInputKept ? 0 : 1);
}

TEST(InheritedDescriptorsMacDeathTest, ClosesADescriptorOnExecButKeepsStandardInput)
{
    EXPECT_EXIT(CheckFlags(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace Toolkit
