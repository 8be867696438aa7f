#include "toolkit/base/ShortenName.h"

#include <gtest/gtest.h>

namespace Toolkit::Base {
namespace {

TEST(ShortenNameTest, LeavesANameThatFitsUnchanged)
{
    EXPECT_EQ(ShortenName("", 16), "");
    EXPECT_EQ(ShortenName("0123456789abcdef", 16), "0123456789abcdef");
}

TEST(ShortenNameTest, KeepsTheBeginningOfALongerNameBeforeAHash)
{
    EXPECT_EQ(ShortenName("a name that is too long", 20), "a na225ecdc4bded9854");
    EXPECT_EQ(ShortenName("a name that is too long", 16), "225ecdc4bded9854");
}

TEST(ShortenNameTest, ComputesThePublishedFnv1aHashes)
{
    EXPECT_EQ(FormatHash(""), "cbf29ce484222325");
    EXPECT_EQ(FormatHash("a"), "af63dc4c8601ec8c");
    EXPECT_EQ(FormatHash("foobar"), "85944171f73967e8");
}

} // namespace
} // namespace Toolkit::Base
