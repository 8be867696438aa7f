// Compares `QP` with a plain reference implementation: on random strings, for every pair of small
// line lengths, and for huge line lengths. Also checks that GMime decodes the output of `QP`,
// unless a soft line break splits an escape.

#include "toolkit/encoding/QuotedPrintable.h"
#include "toolkit/encoding/UTF8.h"

#include "references/QuotedPrintable.h"
#include "support/RandomText.h"

#include <gtest/gtest.h>

#include <cstddef>
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

Wide CreateRandomString(RandomText& random, std::size_t maxLength)
{
    switch (random.Number(0, 2)) {
    case 0:
        return random.Text(std::wstring(L"abc =é"), maxLength);
    case 1:
        return random.Text(std::wstring(L"=0123456789ABCDEFGHabcfgh\r\n"), maxLength);
    default:
        Wide text = random.Text(std::wstring(L"-"), maxLength);
        for (wchar_t& character : text)
            character = static_cast<wchar_t>(random.Number(0, 0x2FF));
        return text;
    }
}

TEST(QuotedPrintableReferenceTest, EncodesRandomStringsLikeTheReference)
{
    RandomText random(1);
    for (int round = 0; round < c_rounds; ++round) {
        const Wide text = CreateRandomString(random, 1000);

        ASSERT_EQ(QP::ToQP(text), EncodeQuotedPrintable(text));
    }
}

TEST(QuotedPrintableReferenceTest, DecodesWhatItEncodes)
{
    RandomText random(2);
    for (int round = 0; round < c_rounds; ++round) {
        const Wide text = CreateRandomString(random, 1000);

        // The conversion to UTF-8 truncates `text` at its first null character.
        ASSERT_EQ(QP::ToUNICODE(QP::ToQP(text)), UTF8::ToUNICODE(UTF8::ToUTF8(text)));
    }
}

TEST(QuotedPrintableReferenceTest, DecodesRandomStringsLikeTheReference)
{
    RandomText random(3);
    for (int round = 0; round < 2 * c_rounds; ++round) {
        const Wide code = CreateRandomString(random, round % 2 == 0 ? 20 : 400);

        ASSERT_EQ(QP::ToUNICODE(code), DecodeQuotedPrintable(code)) << UTF8::ToUTF8(code);
    }
}

TEST(QuotedPrintableReferenceTest, FindsTheSameBytesToEscapeAsTheReference)
{
    for (int byte = 0; byte < 256; ++byte) {
        const TString<char> text(static_cast<char>(byte));
        EXPECT_EQ(QP::HasToBeQP(text, 1, 76, false),
                  MustBeEscaped(static_cast<unsigned char>(byte)));
    }
}

TEST(QuotedPrintableReferenceTest, BreaksLinesLikeTheReferenceForSmallLengths)
{
    RandomText random(4);
    for (unsigned int firstLineLength = 0; firstLineLength <= 40; ++firstLineLength) {
        for (unsigned int lineLength = 0; lineLength <= 40; ++lineLength) {
            const Wide text = random.Text(std::wstring(L"a=é"), 60);
            ASSERT_EQ(QP::ToQP(text, firstLineLength, lineLength),
                      InsertSoftBreaks(EncodeQuotedPrintable(text), firstLineLength, lineLength))
                << firstLineLength << " " << lineLength;
        }
    }
}

TEST(QuotedPrintableReferenceTest, BreaksLinesLikeTheReferenceForHugeLengths)
{
    // A negative `firstLineLength` wraps around to a huge one. A `lineLength` near 2^32 wraps
    // around too, so each break is inserted to the left of the previous one. One near 2^31 leaves
    // room for at most one break.
    RandomText random(5);
    for (int round = 0; round < c_rounds; ++round) {
        const auto firstLineLength = static_cast<unsigned int>(random.Number(-3, 60));
        const unsigned int lineLength = round % 10 == 0 ? random.Number(0x7FFFFFF0u, 0x8000000Fu)
                                                        : random.Number(0xFFFFFFC0u, 0xFFFFFFFDu);
        const Wide text = random.Text(std::wstring(L"a=é"), 60);

        ASSERT_EQ(QP::ToQP(text, firstLineLength, lineLength),
                  InsertSoftBreaks(EncodeQuotedPrintable(text), firstLineLength, lineLength))
            << firstLineLength << " " << lineLength;
    }
}

std::string DecodeWithGMime(const std::string& code)
{
    GMimeEncoding decoder;
    g_mime_encoding_init_decode(&decoder, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    std::string bytes(g_mime_encoding_outlen(&decoder, code.size()), '\0');
    bytes.resize(g_mime_encoding_flush(&decoder, code.data(), code.size(), bytes.data()));
    return bytes;
}

TEST(QuotedPrintableReferenceTest, CreatesCodeThatGMimeDecodes)
{
    RandomText random(6);
    for (int round = 0; round < c_rounds; ++round) {
        const Wide text = random.Text(std::wstring(L"abc =\t\r\né\u20AC\U0001F600"), 300);
        const std::string code = UTF8::ToUTF8(QP::ToQP(text));

        ASSERT_EQ(DecodeWithGMime(code), UTF8::ToUTF8(text));
    }
}

TEST(QuotedPrintableReferenceTest, InsertsSoftBreaksThatGMimeRemoves)
{
    RandomText random(7);
    for (int round = 0; round < c_rounds; ++round) {
        // Only letters, because a break may separate the digits of an escape.
        const Wide text = random.Text(std::wstring(L"abcdefgh"), 300);
        const std::string code = UTF8::ToUTF8(QP::ToQP(text, random.Number(1u, 80u), 76));

        ASSERT_EQ(DecodeWithGMime(code), UTF8::ToUTF8(text));
    }
}

} // namespace
} // namespace Toolkit
