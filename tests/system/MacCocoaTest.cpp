#include "toolkit/system/MacCocoa.h"

#include <gtest/gtest.h>

namespace {

TEST(MacCocoaTest, InitialisationSucceedsWhereNothingHasToBeLoaded)
{
    EXPECT_TRUE(MacInitCocoa());
}

TEST(MacCocoaTest, PoolsNest)
{
    const MacAutoreleasePool outer;
    const MacAutoreleasePool inner;

    EXPECT_NE(&outer, &inner);
}

} // namespace
