#include "toolkit/logging/LogPieceBlock.Private.h"

#include "support/RandomText.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Toolkit {
namespace {

constexpr std::size_t c_pageSize = 16;

std::string GetString(const LogPieceBlock& block)
{
    return {block.Data(), block.Size()};
}

// Returns the blocks that result from `pieces`, the first one at `offset` in the file.
std::vector<std::string> CreateBlocks(std::size_t offset, const std::vector<std::wstring>& pieces)
{
    std::vector<std::string> blocks;
    LogPieceBlock block(c_pageSize);
    block.Begin(static_cast<long long>(offset));
    for (const std::wstring& piece : pieces) {
        if (block.Append(piece))
            continue;
        offset += block.Size();
        blocks.push_back(GetString(block));
        block.Begin(static_cast<long long>(offset));
        EXPECT_TRUE(block.Append(piece));
    }
    blocks.push_back(GetString(block));
    return blocks;
}

using Strings = std::vector<std::string>;

TEST(LogPieceBlockTest, CollectsPiecesThatFitIntoOnePage)
{
    EXPECT_EQ(CreateBlocks(0, {L"one,", L"two,", L"three,"}), Strings({"one,two,three,"}));
}

TEST(LogPieceBlockTest, FillsAPageCompletely)
{
    EXPECT_EQ(CreateBlocks(0, {L"01234567", L"89abcdef", L"next"}),
              Strings({"0123456789abcdef", "next"}));
    EXPECT_EQ(CreateBlocks(10, {L"012", L"345", L"next"}), Strings({"012345", "next"}));
}

TEST(LogPieceBlockTest, StartsABlockWithAPieceThatCrossesAPageBoundary)
{
    EXPECT_EQ(CreateBlocks(0, {L"0123456789", L"abcdefgh", L"i", L"0123456789abcd"}),
              Strings({"0123456789", "abcdefghi", "0123456789abcd"}));
}

TEST(LogPieceBlockTest, FillsTheLastPageOfALongPiece)
{
    EXPECT_EQ(CreateBlocks(8, {std::wstring(30, L'x'), L"0123456789", L"next"}),
              Strings({std::string(30, 'x') + "0123456789", "next"}));
}

TEST(LogPieceBlockTest, SkipsAPieceThatUtf8CannotEncode)
{
    const std::wstring invalid = L"x" + std::wstring(1, static_cast<wchar_t>(0x110000));

    EXPECT_EQ(CreateBlocks(0, {L"a", invalid, L"b"}), Strings({"ab"}));
    EXPECT_EQ(CreateBlocks(0, {invalid, L"b", invalid}), Strings({"b"}));
}

TEST(LogPieceBlockTest, TreatsNarrowPiecesAsLatin1)
{
    LogPieceBlock block(c_pageSize);
    block.Begin(0);

    EXPECT_TRUE(block.Append(std::string_view("a\x7F\0b", 4)));
    EXPECT_TRUE(block.Append(std::string_view("\x80\xE9\xFF")));
    EXPECT_TRUE(block.Append(std::string_view("c\xE9")));
    EXPECT_EQ(GetString(block), std::string("a\x7F\0b\xC2\x80\xC3\xA9\xC3\xBF"
                                            "c\xC3\xA9",
                                            13));
    EXPECT_FALSE(block.Append(std::string_view("\xE9\xE9")));
    EXPECT_EQ(block.Size(), 13u);
}

TEST(LogPieceBlockTest, IgnoresEmptyPieces)
{
    EXPECT_EQ(CreateBlocks(3, {L"", L"0123456789abc", L"", L"d"}), Strings({"0123456789abc", "d"}));
}

// An interrupted write ends at a page boundary. If only the first piece of a block crosses one,
// only that piece can be cut.
TEST(LogPieceBlockTest, LetsOnlyTheFirstPieceCrossAPageBoundary)
{
    TestSupport::RandomText random(1);
    for (int round = 0; round < 2000; ++round) {
        std::size_t offset = random.Number<std::size_t>(0, 100);
        std::vector<std::wstring> pieces(random.Number<std::size_t>(1, 40));
        std::wstring whole;
        for (std::wstring& piece : pieces) {
            piece = random.Text<wchar_t>(L"ab\u00E9\u20AC", 20) + L"|";
            whole += piece;
        }

        std::string written;
        for (const std::string& block : CreateBlocks(offset, pieces)) {
            ASSERT_EQ(block.back(), '|');
            const std::size_t firstEnd = offset + block.find('|') + 1;
            const std::size_t end = offset + block.size();
            ASSERT_TRUE(end == firstEnd || (firstEnd - 1) / c_pageSize == (end - 1) / c_pageSize);
            written += block;
            offset = end;
        }
        std::string expected;
        for (const wchar_t character : whole)
            expected += character == L'\u20AC'   ? "\xE2\x82\xAC"
                        : character == L'\u00E9' ? "\xC3\xA9"
                                                 : std::string(1, static_cast<char>(character));
        ASSERT_EQ(written, expected);
    }
}

} // namespace
} // namespace Toolkit
