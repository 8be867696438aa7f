#include "toolkit/base/LineSplitter.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Toolkit::Base {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// Returns the lines of `text`, each with its line ending.
std::vector<std::pair<std::string, std::string>> LinesOf(std::string_view text)
{
    std::vector<std::pair<std::string, std::string>> result;
    for (LineSplitter lines(text); lines.MoveToNextLine();)
        result.emplace_back(lines.Line(), lines.LineEnd());
    return result;
}

TEST(LineSplitterTest, EndsLinesAtLineFeedsCarriageReturnsAndBoth)
{
    EXPECT_THAT(LinesOf("a\nb\rc\r\nd"),
                ElementsAre(Pair("a", "\n"), Pair("b", "\r"), Pair("c", "\r\n"), Pair("d", "")));
}

TEST(LineSplitterTest, FindsNoLineAfterTheLastLineEnd)
{
    EXPECT_THAT(LinesOf(""), IsEmpty());
    EXPECT_THAT(LinesOf("\n"), ElementsAre(Pair("", "\n")));
    EXPECT_THAT(LinesOf("a\r\n"), ElementsAre(Pair("a", "\r\n")));
    EXPECT_THAT(LinesOf("\r"), ElementsAre(Pair("", "\r")));
}

TEST(LineSplitterTest, TreatsLineFeedThenCarriageReturnAsTwoLineEnds)
{
    EXPECT_THAT(LinesOf("a\n\rb\r\r\n"),
                ElementsAre(Pair("a", "\n"), Pair("", "\r"), Pair("b", "\r"), Pair("", "\r\n")));
}

TEST(LineSplitterTest, KeepsNullCharacters)
{
    EXPECT_THAT(LinesOf(std::string_view("a\0b\n\0", 5)),
                ElementsAre(Pair(std::string("a\0b", 3), "\n"), Pair(std::string(1, '\0'), "")));
}

// If every line searched the rest of the text for a line feed, this would exceed the time limit of
// the test.
TEST(LineSplitterTest, TakesLinearTimeWithoutAnyLineFeed)
{
    const std::string text(10'000'000, '\r');
    std::size_t count = 0;
    for (LineSplitter lines(text); lines.MoveToNextLine();)
        ++count;

    EXPECT_EQ(count, text.size());
}

} // namespace
} // namespace Toolkit::Base
