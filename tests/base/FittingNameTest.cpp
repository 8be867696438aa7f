#include "toolkit/base/FittingName.h"

#include <gtest/gtest.h>

namespace Toolkit {
namespace {

TEST(FittingNameTest, ANameThatFitsStaysAsItIs)
{
    EXPECT_EQ(FittingName("", 16), "");
    EXPECT_EQ(FittingName("0123456789abcdef", 16), "0123456789abcdef");
}

TEST(FittingNameTest, ALongerNameKeepsItsBeginningInFrontOfAHash)
{
    EXPECT_EQ(FittingName("a name that is too long", 20), "a na225ecdc4bded9854");
    EXPECT_EQ(FittingName("a name that is too long", 16), "225ecdc4bded9854");
}

TEST(FittingNameTest, TheHashIsTheOnePublished)
{
    EXPECT_EQ(HashDigits(""), "cbf29ce484222325");
    EXPECT_EQ(HashDigits("a"), "af63dc4c8601ec8c");
    EXPECT_EQ(HashDigits("foobar"), "85944171f73967e8");
}

} // namespace
} // namespace Toolkit
