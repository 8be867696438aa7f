#pragma once

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

namespace Toolkit::TestSupport {

/// Takes from this process, for ever, the right to start others: fork(2) fails with EAGAIN. For a
/// process that ends soon after.
inline void AllowNoMoreProcesses()
{
    // The limit counts all processes of a user and does not hold for the superuser.
    constexpr uid_t userOfNobody = 54321;
    constexpr rlimit onlyThisOne{1, 1};
    if (::geteuid() == 0) {
        EXPECT_EQ(::setresuid(userOfNobody, userOfNobody, userOfNobody), 0);
    }
    EXPECT_EQ(::setrlimit(RLIMIT_NPROC, &onlyThisOne), 0);
}

} // namespace Toolkit::TestSupport
