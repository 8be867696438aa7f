// Compares both conversions with those of ICU, on random strings and on every character.

#include "toolkit/encoding/UTF8.h"

#include "support/RandomText.h"

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Toolkit {
namespace {

using TestSupport::RandomText;

constexpr int c_rounds = 20000;

// Returns an empty string if the bytes are not valid UTF-8.
std::wstring DecodeWithIcu(const std::string& bytes)
{
    UErrorCode error = U_ZERO_ERROR;
    std::vector<UChar> units(bytes.size() + 1);
    std::int32_t unitCount = 0;
    u_strFromUTF8(units.data(), static_cast<std::int32_t>(units.size()), &unitCount, bytes.data(),
                  static_cast<std::int32_t>(bytes.size()), &error);
    std::vector<UChar32> characters(bytes.size() + 1);
    std::int32_t characterCount = 0;
    u_strToUTF32(characters.data(), static_cast<std::int32_t>(characters.size()), &characterCount,
                 units.data(), unitCount, &error);
    if (U_FAILURE(error))
        return {};
    return {characters.begin(), characters.begin() + characterCount};
}

// Returns an empty string if `text` contains a surrogate or a value outside Unicode.
std::string EncodeWithIcu(const std::wstring& text)
{
    UErrorCode error = U_ZERO_ERROR;
    const std::vector<UChar32> characters(text.begin(), text.end());
    std::vector<UChar> units(2 * text.size() + 1);
    std::int32_t unitCount = 0;
    u_strFromUTF32(units.data(), static_cast<std::int32_t>(units.size()), &unitCount,
                   characters.data(), static_cast<std::int32_t>(characters.size()), &error);
    std::string bytes(4 * text.size() + 1, '\0');
    std::int32_t byteCount = 0;
    u_strToUTF8(bytes.data(), static_cast<std::int32_t>(bytes.size()), &byteCount, units.data(),
                unitCount, &error);
    if (U_FAILURE(error))
        return {};
    bytes.resize(static_cast<std::size_t>(byteCount));
    return bytes;
}

// Returns a character of random UTF-8 length that is not a surrogate.
wchar_t PickCharacter(RandomText& random)
{
    constexpr wchar_t last[] = {0x7F, 0x7F, 0x7FF, 0xD7FF, 0x10FFFF};
    const wchar_t character = random.Number<wchar_t>(1, last[random.Number(0, 4)]);
    return character >= 0xD800 && character <= 0xDFFF ? L'?' : character;
}

std::wstring CreateRandomString(RandomText& random, std::size_t maxLength)
{
    std::wstring text(random.Number<std::size_t>(1, maxLength), L'\0');
    // Inserts runs of ASCII, for the fast paths.
    std::size_t ascii = 0;
    for (wchar_t& character : text) {
        if (ascii == 0 && random.Number(0, 9) == 0)
            ascii = random.Number<std::size_t>(0, 40);
        character = ascii > 0 ? L'a' : PickCharacter(random);
        ascii -= ascii > 0 ? 1 : 0;
    }
    return text;
}

TEST(UTF8ReferenceTest, EncodesAndDecodesValidTextLikeIcu)
{
    RandomText random(1);
    for (int round = 0; round < c_rounds; ++round) {
        const std::wstring text = CreateRandomString(random, round % 10 == 0 ? 2500 : 50);
        const std::string expected = EncodeWithIcu(text);

        const TString<char> bytes = UTF8::ToUTF8(text);

        ASSERT_EQ(bytes, expected) << testing::PrintToString(text);
        ASSERT_EQ(UTF8::ToUNICODE(bytes), text) << testing::PrintToString(text);
        ASSERT_EQ(UTF8::HasToBeUTF8(text), expected.size() > text.size());
    }
}

TEST(UTF8ReferenceTest, DecodesDamagedTextLikeIcu)
{
    RandomText random(2);
    int validCount = 0;
    for (int round = 0; round < c_rounds; ++round) {
        std::string bytes = EncodeWithIcu(CreateRandomString(random, round % 10 == 0 ? 1500 : 20));
        for (int damage = random.Number(0, 2); damage > 0; --damage)
            bytes[random.Number<std::size_t>(0, bytes.size() - 1)] =
                static_cast<char>(random.Number(1, 255));
        bytes.resize(bytes.size() - random.Number<std::size_t>(0, 1));
        const std::wstring expected = DecodeWithIcu(bytes);
        validCount += expected.empty() ? 0 : 1;

        ASSERT_EQ(UTF8::ToUNICODE(bytes), expected) << testing::PrintToString(bytes);
    }
    EXPECT_GT(validCount, c_rounds / 10);
    EXPECT_LT(validCount, c_rounds - c_rounds / 10);
}

TEST(UTF8ReferenceTest, DecodesBoundaryBytesLikeIcu)
{
    // Bytes at the boundaries of the ranges in the grammar of UTF-8 (RFC 3629, section 4).
    const std::string alphabet = "a\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xED\xEF\xF0\xF4"
                                 "\xF5\xFF\x80\xBF\xA0";
    RandomText random(3);
    for (int round = 0; round < 50 * c_rounds; ++round) {
        const std::string bytes = random.Text(alphabet, 5);

        ASSERT_EQ(UTF8::ToUNICODE(bytes), DecodeWithIcu(bytes)) << testing::PrintToString(bytes);
    }
}

TEST(UTF8ReferenceTest, EncodesAndDecodesEveryCharacterLikeIcu)
{
    for (wchar_t character = 1; character <= 0x10FFFF; ++character) {
        if (character >= 0xD800 && character <= 0xDFFF)
            continue;
        const std::wstring text(1, character);
        const TString<char> bytes = UTF8::ToUTF8(text);

        ASSERT_EQ(bytes, EncodeWithIcu(text)) << static_cast<long>(character);
        ASSERT_EQ(UTF8::ToUNICODE(bytes), text) << static_cast<long>(character);
    }
}

TEST(UTF8ReferenceTest, RejectsValuesOutsideUnicodeLikeIcu)
{
    RandomText random(4);
    for (int round = 0; round < c_rounds; ++round) {
        std::wstring text = CreateRandomString(random, 50);
        const wchar_t value = random.Number<wchar_t>(0x10FFF0, 0x110010);
        text[random.Number<std::size_t>(0, text.size() - 1)] = round % 2 == 0 ? value : -value;

        ASSERT_EQ(UTF8::ToUTF8(text), EncodeWithIcu(text)) << testing::PrintToString(text);
    }
}

} // namespace
} // namespace Toolkit
