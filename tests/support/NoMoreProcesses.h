#pragma once

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

namespace Toolkit::TestSupport {

/// Makes fork(2) fail with EAGAIN in this process, irrevocably. Call it only in a process that ends
/// soon afterwards.
inline void AllowNoMoreProcesses()
{
    // The limit counts all processes of the user and does not apply to root.
    constexpr uid_t unusedUserId = 54321;
    constexpr rlimit oneProcess{1, 1};
    if (::geteuid() == 0) {
        EXPECT_EQ(::setresuid(unusedUserId, unusedUserId, unusedUserId), 0);
    }
    EXPECT_EQ(::setrlimit(RLIMIT_NPROC, &oneProcess), 0);
}

} // namespace Toolkit::TestSupport
