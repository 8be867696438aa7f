#include "toolkit/logging/LogPieceQueue.Private.h"

#include "support/RandomText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::wstring> Pieces(const LogPieceQueue& queue)
{
    std::vector<std::wstring> pieces;
    queue.ForEach([&pieces](std::wstring_view piece) { pieces.emplace_back(piece); });
    return pieces;
}

TEST(LogPieceQueueTest, BeginsEmpty)
{
    const LogPieceQueue queue;

    EXPECT_TRUE(queue.IsEmpty());
    EXPECT_THAT(Pieces(queue), IsEmpty());
}

TEST(LogPieceQueueTest, KeepsPiecesInOrder)
{
    LogPieceQueue queue;

    for (const wchar_t* const piece : {L"one", L"", L"three"})
        queue.Push(piece);
    queue.Push(std::wstring_view(L"\0four", 5));
    EXPECT_FALSE(queue.IsEmpty());
    EXPECT_THAT(Pieces(queue), ElementsAre(L"one", L"", L"three", std::wstring(L"\0four", 5)));
}

TEST(LogPieceQueueTest, EmptyPieceIsAPiece)
{
    LogPieceQueue queue;

    queue.Push(L"");
    EXPECT_FALSE(queue.IsEmpty());
    EXPECT_THAT(Pieces(queue), ElementsAre(L""));
}

TEST(LogPieceQueueTest, SwapExchangesThePieces)
{
    LogPieceQueue first;
    LogPieceQueue second;
    first.Push(L"text");

    first.Swap(second);
    EXPECT_TRUE(first.IsEmpty());
    EXPECT_THAT(Pieces(second), ElementsAre(L"text"));
}

TEST(LogPieceQueueTest, IsUsedAgainWhenItWasCleared)
{
    LogPieceQueue queue;
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        const std::wstring large(40000, L'x');
        queue.Push(L"small");
        queue.Push(large);
        queue.Push(L"small again");
        EXPECT_THAT(Pieces(queue), ElementsAre(L"small", large, L"small again"));
        queue.Clear();
        EXPECT_TRUE(queue.IsEmpty());
        EXPECT_THAT(Pieces(queue), IsEmpty());
    }
}

TEST(LogPieceQueueTest, IsUsedAgainWhenItWasReleased)
{
    LogPieceQueue queue;
    queue.Push(L"old");

    queue.Release();
    EXPECT_TRUE(queue.IsEmpty());
    queue.Push(L"new");
    EXPECT_THAT(Pieces(queue), ElementsAre(L"new"));
}

TEST(LogPieceQueueTest, HoldsPiecesOfAllLengths)
{
    Testing::RandomText random(1);
    LogPieceQueue queue;
    for (int round = 0; round < 50; ++round) {
        std::vector<std::wstring> expected(random.Number<std::size_t>(0, 300));
        for (std::wstring& piece : expected) {
            const std::size_t longest = random.Number(0, 20) == 0 ? 40000 : 40;
            piece = random.Text<wchar_t>(L"ab\u20AC", longest);
            queue.Push(piece);
        }
        ASSERT_EQ(Pieces(queue), expected);
        queue.Clear();
    }
}

} // namespace
} // namespace Toolkit
