#include "toolkit/logging/LogPieceQueue.Private.h"

#include "support/RandomText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

wchar_t Widen(char byte)
{
    return static_cast<wchar_t>(static_cast<unsigned char>(byte));
}

wchar_t Widen(wchar_t character)
{
    return character;
}

std::vector<std::wstring> CollectPieces(const LogPieceQueue& queue)
{
    std::vector<std::wstring> pieces;
    queue.VisitPieces([&pieces](auto piece) {
        pieces.emplace_back();
        for (const auto character : piece)
            pieces.back() += Widen(character);
    });
    return pieces;
}

TEST(LogPieceQueueTest, StartsEmpty)
{
    const LogPieceQueue queue;

    EXPECT_TRUE(queue.IsEmpty());
    EXPECT_THAT(CollectPieces(queue), IsEmpty());
}

TEST(LogPieceQueueTest, KeepsPiecesInOrder)
{
    LogPieceQueue queue;

    for (const wchar_t* const piece : {L"one", L"", L"three"})
        queue.Push(piece);
    queue.Push(std::wstring_view(L"\0four", 5));
    EXPECT_FALSE(queue.IsEmpty());
    EXPECT_THAT(CollectPieces(queue),
                ElementsAre(L"one", L"", L"three", std::wstring(L"\0four", 5)));
}

TEST(LogPieceQueueTest, KeepsAnEmptyPiece)
{
    LogPieceQueue queue;

    queue.Push(L"");
    EXPECT_FALSE(queue.IsEmpty());
    EXPECT_THAT(CollectPieces(queue), ElementsAre(L""));
}

// Returns the number of pieces that the queue stores as bytes.
int CountNarrowPieces(const LogPieceQueue& queue)
{
    int count = 0;
    queue.VisitPieces([&count](auto piece) { count += sizeof piece[0] == 1; });
    return count;
}

TEST(LogPieceQueueTest, StoresLatin1PiecesAsBytes)
{
    LogPieceQueue queue;

    queue.Push(std::wstring_view(L"bytes \u00FF\0", 8));
    queue.Push(std::wstring(1000, L'\u00E9'));
    queue.Push(L"");
    EXPECT_EQ(CountNarrowPieces(queue), 3);
    queue.Push(L"\u0100");
    queue.Push(std::wstring(1000, L'x') + L"\u20AC");
    queue.Push(std::wstring(1, static_cast<wchar_t>(-1)));
    EXPECT_EQ(CountNarrowPieces(queue), 3);
}

TEST(LogPieceQueueTest, KeepsPiecesOfEveryLength)
{
    LogPieceQueue queue;
    std::vector<std::wstring> expected;
    for (std::size_t length = 0; length < 600; ++length) {
        for (const wchar_t character : {L'x', L'\u00FF', L'\u0100', L'\U0001F600'})
            expected.emplace_back(length, character);
    }

    for (const std::wstring& piece : expected)
        queue.Push(piece);
    EXPECT_EQ(CollectPieces(queue), expected);
}

TEST(LogPieceQueueTest, KeepsPiecesAroundTheSizeOfAChunk)
{
    constexpr std::size_t chunkSize = 65536; // c_chunkSize in LogPieceQueue.cpp
    LogPieceQueue queue;
    std::vector<std::wstring> expected;
    for (std::size_t size = chunkSize - 20; size < chunkSize + 20; ++size) {
        expected.emplace_back(size, L'x');
        expected.emplace_back(L"short");
        expected.emplace_back(size / 4, L'\u20AC');
    }

    for (const std::wstring& piece : expected)
        queue.Push(piece);
    EXPECT_EQ(CollectPieces(queue), expected);
}

TEST(LogPieceQueueTest, SwapsThePieces)
{
    LogPieceQueue first;
    LogPieceQueue second;
    first.Push(L"text");

    first.Swap(second);
    EXPECT_TRUE(first.IsEmpty());
    EXPECT_THAT(CollectPieces(second), ElementsAre(L"text"));
}

TEST(LogPieceQueueTest, IsReusableAfterClear)
{
    LogPieceQueue queue;
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        const std::wstring large(40000, L'x');
        queue.Push(L"small");
        queue.Push(large);
        queue.Push(L"small again");
        EXPECT_THAT(CollectPieces(queue), ElementsAre(L"small", large, L"small again"));
        queue.Clear();
        EXPECT_TRUE(queue.IsEmpty());
        EXPECT_THAT(CollectPieces(queue), IsEmpty());
    }
}

TEST(LogPieceQueueTest, IsReusableAfterRelease)
{
    LogPieceQueue queue;
    queue.Push(L"old");

    queue.Release();
    EXPECT_TRUE(queue.IsEmpty());
    queue.Push(L"new");
    EXPECT_THAT(CollectPieces(queue), ElementsAre(L"new"));
}

TEST(LogPieceQueueTest, KeepsRandomPieces)
{
    TestSupport::RandomText random(1);
    LogPieceQueue queue;
    for (int round = 0; round < 50; ++round) {
        std::vector<std::wstring> expected(random.Number<std::size_t>(0, 300));
        for (std::wstring& piece : expected) {
            const std::size_t maxLength = random.Number(0, 20) == 0 ? 40000 : 40;
            piece = random.Text<wchar_t>(L"ab\u00E9\u20AC", maxLength);
            queue.Push(piece);
        }
        ASSERT_EQ(CollectPieces(queue), expected);
        queue.Clear();
    }
}

} // namespace
} // namespace Toolkit
