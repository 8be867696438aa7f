#include "toolkit/system/MacCocoa.h"

#include <gtest/gtest.h>

namespace {

TEST(MacCocoaTest, InitializesWhereNothingHasToBeLoaded)
{
    EXPECT_TRUE(MacInitCocoa());
}

TEST(MacCocoaTest, NestsPools)
{
    const MacAutoreleasePool outer;
    const MacAutoreleasePool inner;

    EXPECT_NE(&outer, &inner);
}

} // namespace
