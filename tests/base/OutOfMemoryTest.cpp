#include "toolkit/base/OutOfMemory.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace Toolkit::Base {
namespace {

TEST(OutOfMemoryTest, ReturnsTheResult)
{
    EXPECT_EQ(TryOr("failure", [] { return std::string("result"); }), "result");
}

TEST(OutOfMemoryTest, ReturnsTheFailureInsteadOfAnException)
{
    EXPECT_EQ(TryOr(-1, []() -> int { throw std::bad_alloc(); }), -1);
    EXPECT_EQ(TryOr(-1, []() -> int { throw std::length_error("too long"); }), -1);
}

TEST(OutOfMemoryTest, SupportsMoveOnlyResults)
{
    const auto result = TryOr(nullptr, [] { return std::make_unique<int>(7); });

    ASSERT_NE(result, nullptr);
    EXPECT_EQ(*result, 7);
}

TEST(OutOfMemoryTest, ReportsWhetherTheOperationThrew)
{
    EXPECT_TRUE(RunsWithoutThrowing([] {}));
    EXPECT_FALSE(RunsWithoutThrowing([] { throw std::bad_alloc(); }));
}

// RegExp throws a smart_ptr, which is not a std::exception.
TEST(OutOfMemoryTest, LetsANonStandardExceptionThrough)
{
    struct Foreign {};

    EXPECT_THROW(static_cast<void>(TryOr(0, []() -> int { throw Foreign(); })), Foreign);
    EXPECT_THROW(static_cast<void>(RunsWithoutThrowing([] { throw Foreign(); })), Foreign);
}

} // namespace
} // namespace Toolkit::Base
