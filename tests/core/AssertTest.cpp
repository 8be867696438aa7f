#include "toolkit/core/Assert.h"

#include <gtest/gtest.h>

namespace {

TEST(AssertTest, EvaluatesItsArgumentAndDoesNothingElse)
{
    int evaluations = 0;

    ASSERT(++evaluations == 2);
    ASSERT(++evaluations == 2);

    EXPECT_EQ(evaluations, 2);
}

} // namespace
