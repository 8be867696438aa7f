#include "toolkit/encoding/UTF8.h"

#include "support/OutOfMemory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <utility>

namespace Toolkit {
namespace {

using Wide = TString<wchar_t>;
using Narrow = TString<char>;

// The first and last characters of each encoded length, those next to the surrogates, and a few in
// between. U+0000 is missing because it ends a string.
constexpr std::pair<wchar_t, const char*> c_sequences[] = {{0x01, "\x01"},
                                                           {0x7F, "\x7F"},
                                                           {0x80, "\xC2\x80"},
                                                           {0xE9, "\xC3\xA9"},
                                                           {0x7FF, "\xDF\xBF"},
                                                           {0x800, "\xE0\xA0\x80"},
                                                           {0x20AC, "\xE2\x82\xAC"},
                                                           {0xD7FF, "\xED\x9F\xBF"},
                                                           {0xE000, "\xEE\x80\x80"},
                                                           {0xFFFF, "\xEF\xBF\xBF"},
                                                           {0x10000, "\xF0\x90\x80\x80"},
                                                           {0x1F600, "\xF0\x9F\x98\x80"},
                                                           {0x10FFFF, "\xF4\x8F\xBF\xBF"}};

// Sequences that are not valid anywhere in a string.
constexpr const char* c_invalidSequences[] = {"\x80",
                                              "\xBF",
                                              "\xC3",
                                              "\xC3(",
                                              "\xC0\xAF",
                                              "\xC1\xBF",
                                              "\xE2\x82",
                                              "\xE2(\xAC",
                                              "\xE2\x82(",
                                              "\xE0\x80\xAF",
                                              "\xE0\x9F\xBF",
                                              "\xED\xA0\x80",
                                              "\xED\xBF\xBF",
                                              "\xF0\x9F\x98",
                                              "\xF0\x80\x80\xAF",
                                              "\xF0\x8F\xBF\xBF",
                                              "\xF0\x9F\x98(",
                                              "\xF0(\x98\x80",
                                              "\xF4\x90\x80\x80",
                                              "\xF5\x80\x80\x80",
                                              "\xF8\x88\x80\x80\x80",
                                              "\xFE",
                                              "\xFF"};

TEST(UTF8Test, EncodesAndDecodesCharactersOfEveryLength)
{
    for (const auto& [character, bytes] : c_sequences) {
        SCOPED_TRACE(static_cast<unsigned long>(character));
        EXPECT_EQ(UTF8::ToUTF8(character), bytes);
        EXPECT_EQ(UTF8::ToUNICODE(bytes), Wide(character));
    }
}

TEST(UTF8Test, KeepsAnEmptyStringEmpty)
{
    EXPECT_EQ(UTF8::ToUTF8(L""), "");
    EXPECT_EQ(UTF8::ToUNICODE(""), L"");
}

TEST(UTF8Test, ReturnsAnEmptyStringForInvalidBytes)
{
    for (const char* const bytes : c_invalidSequences) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        EXPECT_EQ(UTF8::ToUNICODE(bytes), L"");
        EXPECT_EQ(UTF8::ToUNICODE("text before " + Narrow(bytes)), L"");
        EXPECT_EQ(UTF8::ToUNICODE(Narrow(bytes) + " text after"), L"");
    }
}

TEST(UTF8Test, FindsInvalidBytesAnywhereInALongString)
{
    for (const std::size_t before : {0u, 15u, 16u, 1023u, 1024u, 1025u, 5000u}) {
        SCOPED_TRACE(before);
        const std::string text = std::string(before, 'a') + "\xC3\xA9\xE0\x80\xAF" + "b";
        EXPECT_EQ(UTF8::ToUNICODE(text), L"");
    }
}

TEST(UTF8Test, RejectsATruncatedSequenceAtTheEnd)
{
    const std::string complete = std::string(1030, 'a') + "\xF0\x9F\x98\x80";

    EXPECT_EQ(UTF8::ToUNICODE(complete).size(), 1031u);
    for (std::size_t missing = 1; missing < 4; ++missing)
        EXPECT_EQ(UTF8::ToUNICODE(complete.substr(0, complete.size() - missing)), L"");
}

TEST(UTF8Test, EncodesAndDecodesSequencesAnywhereInALongString)
{
    for (std::size_t before = 1000; before < 1050; ++before) {
        SCOPED_TRACE(before);
        const std::wstring wide = std::wstring(before, L'a') + L"\u00E9\u20AC\U0001F600b";
        const std::string narrow =
            std::string(before, 'a') + "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80" + "b";
        EXPECT_EQ(UTF8::ToUTF8(wide), narrow);
        EXPECT_EQ(UTF8::ToUNICODE(narrow), wide);
    }
}

TEST(UTF8Test, EncodesAndDecodesSequencesAfterRunsOfAscii)
{
    for (std::size_t ascii = 0; ascii <= 40; ++ascii) {
        SCOPED_TRACE(ascii);
        std::wstring wide;
        std::string narrow;
        while (wide.size() < 3000) {
            wide += std::wstring(ascii, L'a') + L'\u00E9';
            narrow += std::string(ascii, 'a') + "\xC3\xA9";
        }
        EXPECT_EQ(UTF8::ToUTF8(wide), narrow);
        EXPECT_EQ(UTF8::ToUNICODE(narrow), wide);
    }
}

TEST(UTF8Test, ReservesAtMostTwiceTheLengthOfALongString)
{
    std::string narrow(2000, 'a');
    for (int i = 0; i < 20000; ++i)
        narrow += "\xE4\xB8\xAD";
    const Wide wide = UTF8::ToUNICODE(narrow);
    const Narrow again = UTF8::ToUTF8(std::wstring(wide.rbegin(), wide.rend()) + Wide(L'a'));

    EXPECT_EQ(wide.size(), 22000u);
    EXPECT_LE(wide.capacity(), 44001u);
    EXPECT_EQ(again.size(), 62001u);
    EXPECT_LE(again.capacity(), 124003u);
}

TEST(UTF8Test, ReturnsEmptyStringsWhenOutOfMemory)
{
    const Wide wide = std::wstring(5000, L'a');
    const Narrow narrow = std::string(5000, 'a');
    const TestSupport::AllocationLimit limit(1000);

    EXPECT_EQ(UTF8::ToUTF8(wide), "");
    EXPECT_EQ(UTF8::ToUNICODE(narrow), L"");
}

TEST(UTF8Test, StopsAtTheFirstNullInBothDirections)
{
    EXPECT_EQ(UTF8::ToUTF8(Wide(std::wstring(L"a\u00E9\0b", 4))), "a\xC3\xA9");
    EXPECT_EQ(UTF8::ToUNICODE(Narrow(std::string("a\0\xFF", 3))), L"a");
    EXPECT_EQ(UTF8::ToUTF8(Wide(L'\0')), "");
}

TEST(UTF8Test, EncodesSurrogatesAsThreeBytes)
{
    EXPECT_EQ(UTF8::ToUTF8(static_cast<wchar_t>(0xD800)), "\xED\xA0\x80");
    EXPECT_EQ(UTF8::ToUTF8(static_cast<wchar_t>(0xDFFF)), "\xED\xBF\xBF");
}

TEST(UTF8Test, ReturnsAnEmptyStringForInvalidCharacters)
{
    for (const wchar_t value : {wchar_t{0x110000}, std::numeric_limits<wchar_t>::max(), wchar_t{-1},
                                std::numeric_limits<wchar_t>::min()}) {
        SCOPED_TRACE(static_cast<long>(value));
        EXPECT_EQ(UTF8::ToUTF8(Wide(value)), "");
        EXPECT_EQ(UTF8::ToUTF8(std::wstring(2000, L'a') + value), "");
        EXPECT_EQ(UTF8::ToUTF8(Wide(L'a') + Wide(L'\0') + value), "a");
    }
}

TEST(UTF8Test, ReportsWhetherUtf8IsLonger)
{
    EXPECT_FALSE(UTF8::HasToBeUTF8(L"abc"));
    EXPECT_FALSE(UTF8::HasToBeUTF8(L""));
    EXPECT_FALSE(UTF8::HasToBeUTF8(L"\u007F"));
    EXPECT_TRUE(UTF8::HasToBeUTF8(L"\u0080"));
    EXPECT_TRUE(UTF8::HasToBeUTF8(L"caf\u00E9"));
    EXPECT_TRUE(UTF8::HasToBeUTF8(L"\U0001F600"));
}

TEST(UTF8Test, ReturnsFalseFromHasToBeUTF8ForInvalidCharacters)
{
    EXPECT_FALSE(UTF8::HasToBeUTF8(L"\u00E9" + Wide(static_cast<wchar_t>(0x110000))));
}

} // namespace
} // namespace Toolkit
