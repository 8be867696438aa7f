#include "toolkit/base/MainThread.h"
#include "toolkit/base/StackSpace.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>

namespace Toolkit::Base {
namespace {

TEST(ThreadsMacTest, ReturnsBoundsThatContainTheStack)
{
    // Not the address of a variable, which AddressSanitizer may place elsewhere.
    const auto frameAddress = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));

    const StackBounds bounds = GetStackBounds();

    EXPECT_LT(bounds.begin, frameAddress);
    EXPECT_GT(bounds.end, frameAddress);
}

TEST(ThreadsMacTest, ReportsOnlyTheFirstThreadAsMain)
{
    bool isOtherFirst = true;
    std::thread([&] { isOtherFirst = IsFirstThread(); }).join();

    EXPECT_TRUE(IsFirstThread());
    EXPECT_FALSE(isOtherFirst);
}

} // namespace
} // namespace Toolkit::Base
