#include "toolkit/system/MacCocoa.h"

#include <gtest/gtest.h>

namespace {

TEST(MacCocoaTest, SucceedsWhenNothingNeedsLoading)
{
    EXPECT_TRUE(MacInitCocoa());
}

TEST(MacCocoaTest, CreatesNestedPoolsWithoutThrowing)
{
    EXPECT_NO_THROW({
        const MacAutoreleasePool outer;
        const MacAutoreleasePool inner;
    });
}

} // namespace
