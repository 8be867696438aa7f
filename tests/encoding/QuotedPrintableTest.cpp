#include "toolkit/encoding/QuotedPrintable.h"

#include "support/OutOfMemory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ios>
#include <string>
#include <utility>

namespace Toolkit {
namespace {

using Narrow = TString<char>;
using Wide = TString<wchar_t>;

TEST(QuotedPrintableTest, HasATableOfUpperCaseDigits)
{
    EXPECT_STREQ(HEX, "0123456789ABCDEF");
}

TEST(QuotedPrintableTest, EscapesAllButPlainCharacters)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"", L""},
        {L"plain", L"plain"},
        {L"a b", L"a=20b"},
        {L"x=y", L"x=3Dy"},
        {L"\t\r\n", L"=09=0D=0A"},
        {L"\x7F", L"=7F"},
        {L"h\u00e9", L"h=C3=A9"},
        {L"\u20ac", L"=E2=82=AC"},
        {L"\U0001F600", L"=F0=9F=98=80"}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(QP::ToQP(text), expected);
}

TEST(QuotedPrintableTest, EscapesOnlySomePunctuation)
{
    const Wide plain = L"!#$%&'*+-.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ^_`"
                       L"abcdefghijklmnopqrstuvwxyz{|}~";

    EXPECT_EQ(QP::ToQP(plain), plain);
    EXPECT_EQ(QP::ToQP(L"\"(),/:;<=>?@[\\]"), L"=22=28=29=2C=2F=3A=3B=3C=3D=3E=3F=40=5B=5C=5D");
}

TEST(QuotedPrintableTest, EncodesUpToTheFirstNull)
{
    EXPECT_EQ(QP::ToQP(std::wstring(L"a\0b", 3)), L"a");
}

TEST(QuotedPrintableTest, ReturnsAnEmptyStringForInvalidCharacters)
{
    EXPECT_EQ(QP::ToQP(L"a" + std::wstring(1, wchar_t(0x110000))), L"");
}

TEST(QuotedPrintableTest, DecodesEscapesInEitherCase)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"", L""},
        {L"plain", L"plain"},
        {L"a=20b", L"a b"},
        {L"=c3=A9=C3=a9", L"\u00e9\u00e9"},
        {L"=F0=9F=98=80", L"\U0001F600"},
        {L"a rather long line=2C with one =3D and another",
         L"a rather long line, with one = and another"}};
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(QP::ToUNICODE(code), expected);
}

TEST(QuotedPrintableTest, DecodesGAsTheDigitSixteen)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"=41=4g", L"AP"}, {L"=4G", L"P"},      {L"=3g=3G", L"@@"},
        {L"=G1", L"\x01"},  {L"=g1x", L"\x01x"}, {L"=GG", L"\x10"}};
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(QP::ToUNICODE(code), expected);
}

TEST(QuotedPrintableTest, DropsTheEqualsSignOfAnInvalidEscape)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"=4hx", L"4hx"}, {L"=h4x", L"h4x"}, {L"==41", L"A"},
        {L"===", L"=="},   {L"= 41", L" 41"}, {L"a=\u00e9b", L"a\u00e9b"}};
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(QP::ToUNICODE(code), expected);
}

TEST(QuotedPrintableTest, DropsOnlyTheEqualsSignOfASoftLineBreak)
{
    EXPECT_EQ(QP::ToUNICODE(L"one=\r\ntwo"), L"one\r\ntwo");
}

TEST(QuotedPrintableTest, CopiesATruncatedEscapeAtTheEnd)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"=4", L"=4"},
        {L"a=", L"a="},
        {L"ab=4", L"ab=4"},
        {L"==", L"=="},
        {L"=41=4", L"A=4"},
        {L"long enough=4", L"long enough=4"},
        {L"1234567=", L"1234567="},
        {L"123456=4", L"123456=4"},
        {L"12345=41", L"12345A"}};
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(QP::ToUNICODE(code), expected);
}

TEST(QuotedPrintableTest, KeepsTheLastTwoOfManyEqualsSigns)
{
    for (const std::size_t length : {2u, 72u, 73u, 5000u})
        EXPECT_EQ(QP::ToUNICODE(std::wstring(length, L'=')), L"==") << length;
}

TEST(QuotedPrintableTest, DecodesASingleEqualsSignToAnEmptyString)
{
    EXPECT_EQ(QP::ToUNICODE(L"="), L"");
}

TEST(QuotedPrintableTest, CutsDecodedTextAtItsFirstNull)
{
    EXPECT_EQ(QP::ToUNICODE(L"ab=00cd"), L"ab");
}

TEST(QuotedPrintableTest, ReturnsAnEmptyStringForInvalidUtf8)
{
    constexpr const wchar_t* cases[] = {L"a=C3", L"=C3=28", L"x=FF", L"=ED=A0=80"};
    for (const wchar_t* const code : cases)
        EXPECT_EQ(QP::ToUNICODE(code), L"");
}

TEST(QuotedPrintableTest, ReportsThatALongLineMustBeEncoded)
{
    for (const bool ignoreCharacters : {false, true}) {
        EXPECT_TRUE(QP::HasToBeQP(Narrow("a"), 77, 76, ignoreCharacters));
        EXPECT_FALSE(QP::HasToBeQP(Narrow("a"), 76, 76, ignoreCharacters));
        EXPECT_TRUE(QP::HasToBeQP(Wide(L"a"), 0xFFFFFFFF, 76, ignoreCharacters));
        EXPECT_FALSE(QP::HasToBeQP(Wide(L"a"), 0, 0, ignoreCharacters));
    }
}

TEST(QuotedPrintableTest, ReportsThatALineFeedMustBeEncoded)
{
    for (const bool ignoreCharacters : {false, true}) {
        EXPECT_TRUE(QP::HasToBeQP(Narrow("a\nb"), 1, 76, ignoreCharacters));
        EXPECT_TRUE(QP::HasToBeQP(Narrow(std::string("a\0\n", 3)), 1, 76, ignoreCharacters));
        EXPECT_TRUE(QP::HasToBeQP(Wide(L"a\nb"), 1, 76, ignoreCharacters));
    }
    EXPECT_FALSE(QP::HasToBeQP(Narrow("a\rb"), 1, 76, true));
}

TEST(QuotedPrintableTest, ReportsThatACharacterMustBeEncodedUnlessIgnored)
{
    for (const char* text : {"\t", " ", "=", "a]", "h\xC3\xA9", "\x80", "\"", "\x01"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(QP::HasToBeQP(Narrow(text), 1, 76, false));
        EXPECT_FALSE(QP::HasToBeQP(Narrow(text), 1, 76, true));
    }
    EXPECT_TRUE(QP::HasToBeQP(Narrow(std::string(1, '\0')), 1, 76, false));
    EXPECT_FALSE(QP::HasToBeQP(Narrow("!#$%&'*+-.09AZ^_`az{|}~"), 1, 76, false));
}

TEST(QuotedPrintableTest, EscapesU007FAlthoughHasToBeQPIgnoresIt)
{
    EXPECT_FALSE(QP::HasToBeQP(Narrow("\x7F"), 1, 76, false));
    EXPECT_EQ(QP::ToQP(L"\x7F"), L"=7F");
}

TEST(QuotedPrintableTest, IgnoresAllButLineFeedsOfWideStringsInHasToBeQP)
{
    for (const bool ignoreCharacters : {false, true})
        EXPECT_FALSE(QP::HasToBeQP(Wide(L"\t=\u00e9"), 1, 76, ignoreCharacters));
}

TEST(QuotedPrintableTest, InsertsSoftBreaksToLimitLineLengths)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"abcdefghijkl", L"abcdefghi=\r\njkl"},
        {L"abcdefgh=", L"abcdefgh=\r\n=3D"},
        {L"abcdefghi", L"abcdefghi"},
        {L"abcdefghij", L"abcdefghi=\r\nj"},
        {L"abcdefghijklmnopqrst", L"abcdefghi=\r\njklmnopqr=\r\nst"}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(QP::ToQP(text, 10, 10), expected);
}

TEST(QuotedPrintableTest, MayBreakALineBetweenTheDigitsOfAnEscape)
{
    EXPECT_EQ(QP::ToQP(L"ab ", 5, 10), L"ab=2=\r\n0");
}

TEST(QuotedPrintableTest, DoesNotBreakLinesForALengthBelowFour)
{
    for (const unsigned int lineLength : {0u, 1u, 3u})
        EXPECT_EQ(QP::ToQP(L"a b", 2, lineLength), L"a=20b");
    EXPECT_EQ(QP::ToQP(L"abcdefgh", 2, 4), L"a=\r\nbcd=\r\nefg=\r\nh");
}

TEST(QuotedPrintableTest, AcceptsFirstLineLengthsBelowFour)
{
    constexpr std::pair<unsigned int, const wchar_t*> cases[] = {{0, L"=20abcd"},
                                                                 {1, L"=\r\n=20=\r\nabc=\r\nd"},
                                                                 {2, L"=\r\n=20=\r\nabc=\r\nd"},
                                                                 {3, L"=2=\r\n0ab=\r\ncd"}};
    for (const auto& [first, expected] : cases)
        EXPECT_EQ(QP::ToQP(L" abcd", first, 4), expected) << first;
}

TEST(QuotedPrintableTest, InsertsBreaksBackwardsForHugeLineLengths)
{
    constexpr std::pair<unsigned int, const wchar_t*> cases[] = {
        {0x7FFFFFFE, L"ab=20=\r\ncd"},
        {0xFFFFFFF8, L"ab=20=\r\ncd"},
        {0xFFFFFFFA, L"a=\r\nb=20=\r\ncd"},
        {0xFFFFFFFC, L"=\r\nab=\r\n=20=\r\ncd"},
        {0xFFFFFFFD, L"=\r\na=\r\nb=\r\n=2=\r\n0=\r\ncd"}};
    for (const auto& [lineLength, expected] : cases)
        EXPECT_EQ(QP::ToQP(L"ab cd", 6, lineLength), expected) << std::hex << lineLength;
}

TEST(QuotedPrintableTest, BreaksAtMostOnceForTheTwoLargestLineLengths)
{
    for (const unsigned int lineLength : {0xFFFFFFFEu, 0xFFFFFFFFu}) {
        EXPECT_EQ(QP::ToQP(L"ab cd", 4, lineLength), L"ab=\r\n=20cd");
        EXPECT_EQ(QP::ToQP(L"ab cd", 0xFFFFFFFF, lineLength), L"ab=20cd");
    }
}

TEST(QuotedPrintableTest, ReturnsAnEmptyStringWhenOutOfMemory)
{
    const Wide text = std::wstring(1000, L'\n');
    const TestSupport::AllocationLimit limit(500);

    EXPECT_EQ(QP::ToQP(text), L"");
    EXPECT_EQ(QP::ToQP(text, 76, 76), L"");
    EXPECT_EQ(QP::ToUNICODE(text), L"");
    EXPECT_NO_THROW(QP::HasToBeQP(text, 1, 76, false));
}

// If each break moved what follows it, this would exceed the time limit of the test.
TEST(QuotedPrintableTest, BreaksLongStringsInLinearTime)
{
    const std::size_t length = 4'000'000;

    const Wide lines = QP::ToQP(std::wstring(length, L'x'), 4, 4);

    EXPECT_EQ(lines.size(), length + (length - 1) / 3 * 3);
    EXPECT_EQ(lines.substr(0, 13), L"xxx=\r\nxxx=\r\nx");
}

} // namespace
} // namespace Toolkit
