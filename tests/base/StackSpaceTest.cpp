#include "toolkit/base/StackSpace.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <thread>
#include <ucontext.h>
#include <vector>

namespace Toolkit::Base {
namespace {

std::size_t s_spaceLeft = 0;

// Returns what GetStackSpaceLeft() reports while the calling thread runs on `stack`.
std::size_t MeasureSpaceLeftOn(std::vector<char>& stack)
{
    ucontext_t here;
    ucontext_t there;
    getcontext(&there);
    there.uc_stack.ss_sp = stack.data();
    there.uc_stack.ss_size = stack.size();
    there.uc_link = &here;
    makecontext(
        &there, [] { s_spaceLeft = GetStackSpaceLeft(); }, 0);
    swapcontext(&here, &there);
    return s_spaceLeft;
}

TEST(StackSpaceTest, FindsBoundsAroundTheCallersFrame)
{
    const StackBounds bounds = GetStackBounds();
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));

    EXPECT_GT(here, bounds.begin);
    EXPECT_LT(here, bounds.end);
}

TEST(StackSpaceTest, ReturnsTheDistanceToTheBeginningOfTheStack)
{
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    const std::size_t left = here - GetStackBounds().begin;

    EXPECT_LE(GetStackSpaceLeft(), left);
    EXPECT_GT(GetStackSpaceLeft(), left - 65536);
}

TEST(StackSpaceTest, FindsDifferentBoundsForEachThread)
{
    const std::uintptr_t here = GetStackBounds().begin;
    std::uintptr_t there = here;
    std::thread([&there] { there = GetStackBounds().begin; }).join();

    EXPECT_NE(here, there);
}

TEST(StackSpaceTest, AssumesLittleSpaceOnAStackUnknownToTheSystem)
{
    std::vector<char> stack(256 * 1024);

    EXPECT_EQ(MeasureSpaceLeftOn(stack), 32u * 1024);
}

} // namespace
} // namespace Toolkit::Base
