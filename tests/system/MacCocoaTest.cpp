#include "toolkit/system/MacCocoa.h"

#include <gtest/gtest.h>

namespace {

TEST(MacCocoaTest, SucceedsWhenNothingNeedsLoading)
{
    EXPECT_TRUE(MacInitCocoa());
}

TEST(MacCocoaTest, SupportsNestedPools)
{
    const MacAutoreleasePool outer;
    const MacAutoreleasePool inner;

    EXPECT_NE(&outer, &inner);
}

} // namespace
