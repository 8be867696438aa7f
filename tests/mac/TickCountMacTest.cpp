#include "toolkit/base/TickCount.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sys/times.h>
#include <unistd.h>

namespace {

clock_t s_ticks = 0;

} // namespace

// Writes to the buffer without a null check, as the C library of macOS does.
extern "C" clock_t times(struct tms* buffer)
{
    *buffer = tms{1, 2, 3, 4};
    return s_ticks;
}

namespace Toolkit::Base {
namespace {

TEST(TickCountMacTest, ConvertsTheTicksOfTheSystemToMilliseconds)
{
    s_ticks = 123;

    EXPECT_EQ(GetTickCount(), 123u * static_cast<unsigned int>(1000 / ::sysconf(_SC_CLK_TCK)));
}

} // namespace
} // namespace Toolkit::Base
