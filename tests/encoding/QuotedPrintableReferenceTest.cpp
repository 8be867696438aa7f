// Compares quoted-printable with a plain reference implementation, on random strings and for every
// pair of small line lengths. Also decodes the output with another library, where both follow the
// same rules.

#include "toolkit/encoding/QuotedPrintable.h"
#include "toolkit/encoding/UTF8.h"

#include "references/QuotedPrintable.h"
#include "support/RandomText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <gmime/gmime.h>
#include <string>

namespace Toolkit {
namespace {

using References::DecodeQuotedPrintable;
using References::EncodeQuotedPrintable;
using References::InsertSoftBreaks;
using References::MustBeEscaped;
using TestSupport::RandomText;
using Wide = TString<wchar_t>;

constexpr int c_rounds = 5000;

Wide RandomLine(RandomText& random, std::size_t longest)
{
    switch (random.Number(0, 2)) {
    case 0:
        return random.Text(std::wstring(L"abc =é"), longest);
    case 1:
        return random.Text(std::wstring(L"=0123456789ABCDEFGHabcfgh\r\n"), longest);
    default:
        Wide text = random.Text(std::wstring(L"-"), longest);
        for (wchar_t& character : text)
            character = static_cast<wchar_t>(random.Number(0, 0x2FF));
        return text;
    }
}

TEST(QuotedPrintableReferenceTest, EncodesRandomTextsAsByTheTables)
{
    RandomText random(1);
    for (int round = 0; round < c_rounds; ++round) {
        const Wide text = RandomLine(random, 1000);

        ASSERT_EQ(QP::ToQP(text), EncodeQuotedPrintable(text));
    }
}

TEST(QuotedPrintableReferenceTest, DecodesWhatWasEncoded)
{
    RandomText random(2);
    for (int round = 0; round < c_rounds; ++round) {
        const Wide text = RandomLine(random, 1000);

        ASSERT_EQ(QP::ToUNICODE(QP::ToQP(text)), UTF8::ToUNICODE(UTF8::ToUTF8(text)));
    }
}

TEST(QuotedPrintableReferenceTest, DecodesRandomTextsAsByTheTables)
{
    RandomText random(3);
    for (int round = 0; round < 2 * c_rounds; ++round) {
        const Wide code = RandomLine(random, round % 2 == 0 ? 20 : 400);

        ASSERT_EQ(QP::ToUNICODE(code), DecodeQuotedPrintable(code)) << UTF8::ToUTF8(code);
    }
}

TEST(QuotedPrintableReferenceTest, ReportsEveryByteAsItsTableSays)
{
    for (int byte = 0; byte < 256; ++byte) {
        const TString<char> text(static_cast<char>(byte));
        EXPECT_EQ(QP::HasToBeQP(text, 1, 76, false),
                  MustBeEscaped(static_cast<unsigned char>(byte)));
    }
}

TEST(QuotedPrintableReferenceTest, BreaksLinesOfEveryPairOfSmallLengths)
{
    RandomText random(4);
    for (unsigned int first = 0; first <= 40; ++first) {
        for (unsigned int line = 0; line <= 40; ++line) {
            const Wide text = random.Text(std::wstring(L"a=é"), 60);
            ASSERT_EQ(QP::ToQP(text, first, line),
                      InsertSoftBreaks(EncodeQuotedPrintable(text), first, line))
                << first << " " << line;
        }
    }
}

TEST(QuotedPrintableReferenceTest, BreaksLinesOfEnormousLengths)
{
    RandomText random(5);
    for (int round = 0; round < c_rounds; ++round) {
        const auto first = static_cast<unsigned int>(random.Number(-3, 60));
        const unsigned int line = round % 10 == 0 ? random.Number(0x7FFFFFF0u, 0x8000000Fu)
                                                  : random.Number(0xFFFFFFC0u, 0xFFFFFFFDu);
        const Wide text = random.Text(std::wstring(L"a=é"), 60);

        ASSERT_EQ(QP::ToQP(text, first, line),
                  InsertSoftBreaks(EncodeQuotedPrintable(text), first, line))
            << first << " " << line;
    }
}

std::string DecodedByAnotherLibrary(const std::string& code)
{
    GMimeEncoding decoder;
    g_mime_encoding_init_decode(&decoder, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    std::string bytes(g_mime_encoding_outlen(&decoder, code.size()), '\0');
    bytes.resize(g_mime_encoding_flush(&decoder, code.data(), code.size(), bytes.data()));
    return bytes;
}

TEST(QuotedPrintableReferenceTest, WritesWhatAnotherLibraryReads)
{
    RandomText random(6);
    for (int round = 0; round < c_rounds; ++round) {
        const Wide text = random.Text(std::wstring(L"abc =\t\r\né\u20AC\U0001F600"), 300);
        const std::string code = UTF8::ToUTF8(QP::ToQP(text));

        ASSERT_EQ(DecodedByAnotherLibrary(code), UTF8::ToUTF8(text));
    }
}

TEST(QuotedPrintableReferenceTest, BreaksLinesSoThatAnotherLibraryReadsThem)
{
    RandomText random(7);
    for (int round = 0; round < c_rounds; ++round) {
        // Without escapes, because a break may separate the digits of an escape.
        const Wide text = random.Text(std::wstring(L"abcdefgh"), 300);
        const std::string code = UTF8::ToUTF8(QP::ToQP(text, random.Number(1u, 80u), 76));

        ASSERT_EQ(DecodedByAnotherLibrary(code), UTF8::ToUTF8(text));
    }
}

} // namespace
} // namespace Toolkit
