#include "toolkit/encoding/UTF7.h"

#include "support/OutOfMemory.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace Toolkit {
namespace {

using Wide = TString<wchar_t>;
using Narrow = TString<char>;

TEST(UTF7Test, KeepsAsciiUnchanged)
{
    std::wstring wide;
    std::string narrow;
    for (int value = 1; value < 0x80; ++value) {
        wide.push_back(static_cast<wchar_t>(value));
        narrow.push_back(static_cast<char>(value));
    }

    EXPECT_EQ(UTF7::ToUTF7(wide), narrow);
    EXPECT_EQ(UTF7::ToUNICODE(narrow), wide);
}

TEST(UTF7Test, ReplacesNonAsciiCharactersWithUnderscores)
{
    const Wide extremes = std::wstring{std::numeric_limits<wchar_t>::min(), L'a', -1, L'b',
                                       std::numeric_limits<wchar_t>::max()};

    EXPECT_EQ(UTF7::ToUTF7(L"caf\u00E9"), "caf_");
    EXPECT_EQ(UTF7::ToUTF7(L"\u007F\u0080\u00FF\u0100\u20AC\U0001F600"), "\x7F_____");
    EXPECT_EQ(UTF7::ToUTF7(extremes), "_a_b_");
}

TEST(UTF7Test, KeepsAnEmptyStringEmpty)
{
    EXPECT_EQ(UTF7::ToUTF7(L""), "");
    EXPECT_EQ(UTF7::ToUNICODE(""), L"");
}

TEST(UTF7Test, DoesNotWriteOrReadUtf7)
{
    EXPECT_EQ(UTF7::ToUTF7(L"1+1-~\\"), "1+1-~\\");
    EXPECT_EQ(UTF7::ToUNICODE("+AOk-"), L"+AOk-");
}

TEST(UTF7Test, WritesNullCharacters)
{
    EXPECT_EQ(UTF7::ToUTF7(Wide(std::wstring(L"a\0b", 3))), Narrow(std::string("a\0b", 3)));
}

TEST(UTF7Test, ReadsEachByteAsTheCharacterWithItsValue)
{
    for (int value = 1; value < 0x100; ++value) {
        SCOPED_TRACE(value);
        EXPECT_EQ(UTF7::ToUNICODE(static_cast<char>(value)), Wide(static_cast<wchar_t>(value)));
    }
}

TEST(UTF7Test, ReturnsEmptyStringsWhenOutOfMemory)
{
    const Wide wide = std::wstring(100, L'a');
    const Narrow narrow = std::string(100, 'a');
    const TestSupport::AllocationLimit limit(50);

    EXPECT_EQ(UTF7::ToUTF7(wide), "");
    EXPECT_EQ(UTF7::ToUNICODE(narrow), L"");
}

TEST(UTF7Test, ReadsBytesUpToTheFirstNull)
{
    EXPECT_EQ(UTF7::ToUNICODE(Narrow(std::string("a\0b", 3))), L"a");
}

} // namespace
} // namespace Toolkit
