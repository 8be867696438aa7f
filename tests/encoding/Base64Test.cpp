#include "toolkit/encoding/Base64.h"

#include "support/OutOfMemory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <string>
#include <utility>

namespace Toolkit {
namespace {

using Wide = TString<wchar_t>;
using Operation = bool (*)(const unsigned char*, unsigned int, unsigned char**, unsigned int*);

// Calls b64_decode_binary(), which encodes, or b64_encode_binary(), which decodes. Returns
// `std::nullopt` if it fails.
std::optional<std::string> Convert(Operation operation, const std::string& in)
{
    unsigned char* out = nullptr;
    unsigned int length = 0;
    if (!operation(reinterpret_cast<const unsigned char*>(in.data()),
                   static_cast<unsigned int>(in.size()), &out, &length))
        return std::nullopt;
    const std::string result(reinterpret_cast<const char*>(out), length);
    delete[] out;
    return result;
}

std::optional<std::string> Encode(const std::string& bytes)
{
    return Convert(b64_decode_binary, bytes);
}

std::optional<std::string> Decode(const std::string& code)
{
    return Convert(b64_encode_binary, code);
}

smart_ptr<Bytes> BytesOf(const std::string& bytes)
{
    return smart_ptr<Bytes>(new Bytes(reinterpret_cast<const unsigned char*>(bytes.data()),
                                      static_cast<unsigned int>(bytes.size())));
}

std::string ContentsOf(const smart_ptr<Bytes>& bytes)
{
    unsigned char* copy = nullptr;
    unsigned int size = 0;
    if (!bytes->GetBytes(&copy, &size))
        return "";
    const std::string contents(reinterpret_cast<const char*>(copy), size);
    delete[] copy;
    return contents;
}

TEST(Base64Test, RoundsTheCodeLengthUpToWholeGroups)
{
    constexpr std::pair<int, int> cases[] = {{0, 0}, {1, 4},  {2, 4},   {3, 4},
                                             {4, 8}, {-1, 0}, {-3, -4}, {1610612733, 2147483644}};
    for (const auto& [length, expected] : cases)
        EXPECT_EQ(GetCodeLength(length), expected) << length;
}

TEST(Base64Test, ReturnsANegativeCodeLengthIfItOverflows)
{
    EXPECT_EQ(GetCodeLength(1610612734), -2147483647 - 1);
    EXPECT_EQ(GetCodeLength(2147483647), -1431655764);
}

TEST(Base64Test, ReturnsThreeQuartersRoundedUpAsTheDataLength)
{
    constexpr std::pair<int, int> cases[] = {{0, 0}, {1, 1}, {3, 3},   {4, 3},
                                             {6, 5}, {8, 6}, {-4, -3}, {2147483647, 1610612736}};
    for (const auto& [length, expected] : cases)
        EXPECT_EQ(GetDataLength(length), expected) << length;
}

// RFC 4648, section 10.
TEST(Base64Test, EncodesAndDecodesTheExamplesOfTheStandard)
{
    constexpr std::pair<const char*, const char*> cases[] = {
        {"f", "Zg=="},        {"fo", "Zm8="},        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="}, {"fooba", "Zm9vYmE="}, {"foobar", "Zm9vYmFy"}};
    for (const auto& [bytes, code] : cases) {
        EXPECT_EQ(Encode(bytes), code);
        EXPECT_EQ(Decode(code), bytes);
    }
}

TEST(Base64Test, EncodesAndDecodesTheWholeAlphabet)
{
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::string bytes("\x00\x10\x83\x10\x51\x87\x20\x92\x8b\x30\xd3\x8f\x41\x14\x93\x51"
                            "\x55\x97\x61\x96\x9b\x71\xd7\x9f\x82\x18\xa3\x92\x59\xa7\xa2\x9a"
                            "\xab\xb2\xdb\xaf\xc3\x1c\xb3\xd3\x5d\xb7\xe3\x9e\xbb\xf3\xdf\xbf",
                            48);

    EXPECT_EQ(Encode(bytes), alphabet);
    EXPECT_EQ(Decode(alphabet), bytes);
}

TEST(Base64Test, FailsForEmptyInput)
{
    EXPECT_EQ(Encode(""), std::nullopt);
    EXPECT_EQ(Decode(""), std::nullopt);
}

TEST(Base64Test, RejectsLengthsAboveTheLimits)
{
    const unsigned char in[4] = {'Q', 'Q', '=', '='};
    unsigned char* out = nullptr;
    unsigned int length = 7;

    for (const unsigned int tooLong : {1610612734u, 2147483647u, 2147483648u, 4294967295u})
        EXPECT_FALSE(b64_decode_binary(in, tooLong, &out, &length)) << tooLong;
    for (const unsigned int tooLong : {2147483648u, 4294967295u})
        EXPECT_FALSE(b64_encode_binary(in, tooLong, &out, &length)) << tooLong;

    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(length, 7u);
}

TEST(Base64Test, RejectsNullPointers)
{
    const unsigned char in[4] = {'Q', 'Q', '=', '='};
    unsigned char* out = nullptr;
    unsigned int length = 7;

    for (const Operation operation : {b64_decode_binary, b64_encode_binary}) {
        EXPECT_FALSE(operation(nullptr, 4, &out, &length));
        EXPECT_FALSE(operation(in, 4, nullptr, &length));
        EXPECT_FALSE(operation(in, 4, &out, nullptr));
    }
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(length, 7u);
}

TEST(Base64Test, FailsWhenOutOfMemoryForTheResult)
{
    const std::string in(1000, 'Q');
    const auto* const data = reinterpret_cast<const unsigned char*>(in.data());
    unsigned char* out = nullptr;
    unsigned int length = 7;

    const TestSupport::AllocationLimit limit(500);
    EXPECT_FALSE(b64_decode_binary(data, 1000, &out, &length));
    EXPECT_FALSE(b64_encode_binary(data, 1000, &out, &length));

    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(length, 7u);
}

TEST(Base64Test, ReturnsAnEmptyStringOrBufferWhenOutOfMemory)
{
    const smart_ptr<Bytes> bytes = BytesOf(std::string(1000, 'x'));
    const Wide text = std::wstring(2000, L'Q');

    const TestSupport::AllocationLimit limit(1100);
    const Wide code = B64::ToUNICODE(bytes);
    const smart_ptr<Bytes> decoded = B64::ToB64(text);

    EXPECT_EQ(code, L"");
    ASSERT_TRUE(decoded.IsValid());
    EXPECT_EQ(ContentsOf(decoded), "");
}

TEST(Base64Test, StopsAtTheFirstPaddingCharacter)
{
    const std::pair<const char*, std::string> cases[] = {{"=", std::string(1, '\0')},
                                                         {"=QUI", std::string(1, '\0')},
                                                         {"Q=UI", "@"},
                                                         {"QQ==", "A"},
                                                         {"QQ=x", "A"},
                                                         {"QUI=", "AB"},
                                                         {"QUI=QUJD", "AB"},
                                                         {"QUJD=", std::string("ABC\0", 4)},
                                                         {"QUJDQQ=", "ABCA"},
                                                         {"Q=", "@"}};
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(Decode(code), expected) << code;
}

TEST(Base64Test, DropsAnIncompleteLastGroup)
{
    constexpr std::pair<const char*, const char*> cases[] = {
        {"Q", ""}, {"QU", ""}, {"QUJ", ""}, {"QUJDQ", "ABC"}, {"QUJDQUJ", "ABC"}};
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(Decode(code), expected) << code;
}

TEST(Base64Test, FillsTheRestOfTheArrayWithZeros)
{
    // Each expected array has the size that GetDataLength() returns.
    const std::pair<std::string, std::string> cases[] = {
        {"Q", std::string(1, '\0')},
        {"QUJ", std::string(3, '\0')},
        {"QQ==", std::string("A\0\0", 3)},
        {"QUI=", std::string("AB\0", 3)},
        {"QUJDQUJ", std::string("ABC\0\0\0", 6)},
        {"QQ==" + std::string(36, 'x'), "A" + std::string(29, '\0')}};
    for (const auto& [code, expected] : cases) {
        SCOPED_TRACE(code);
        // Frees a block of the same size that is filled with 0xEE: the allocator usually reuses it
        // without clearing it.
        delete[] static_cast<unsigned char*>(
            std::memset(new unsigned char[expected.size()], 0xEE, expected.size()));
        unsigned char* out = nullptr;
        unsigned int length = 0;

        ASSERT_TRUE(b64_encode_binary(reinterpret_cast<const unsigned char*>(code.data()),
                                      static_cast<unsigned int>(code.size()), &out, &length));

        EXPECT_EQ(std::string(reinterpret_cast<const char*>(out), expected.size()), expected);
        delete[] out;
    }
}

TEST(Base64Test, DecodesCharactersOutsideTheAlphabetAsZero)
{
    const std::pair<const char*, std::string> cases[] = {{"????", std::string(3, '\0')},
                                                         {"QU-D", "A@\x03"},
                                                         {"QU D", "A@\x03"},
                                                         {"QUI\xFF", std::string("AB\0", 3)}};
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(Decode(code), expected) << code;
}

TEST(Base64Test, DecodesLineBreakCharactersAsZero)
{
    // The groups are "QUJD", "\r\nQU" and an incomplete "JD".
    EXPECT_EQ(Decode("QUJD\r\nQUJD"), std::string("ABC\0\4\x14", 6));
}

TEST(Base64Test, EncodesBytesToAWideString)
{
    EXPECT_EQ(B64::ToUNICODE(BytesOf("A")), L"QQ==");
    EXPECT_EQ(B64::ToUNICODE(BytesOf(std::string("\0\xFF", 2))), L"AP8=");
    EXPECT_EQ(B64::ToUNICODE(BytesOf("")), L"");
    EXPECT_EQ(B64::ToUNICODE(smart_ptr<Bytes>()), L"");
}

TEST(Base64Test, DecodesAWideStringToBytes)
{
    const std::pair<const wchar_t*, std::string> cases[] = {
        {L"QQ==", "A"}, {L"AP8=", std::string("\0\xFF", 2)}, {L"", ""}, {L"QUJ", ""}};
    for (const auto& [text, expected] : cases) {
        const smart_ptr<Bytes> bytes = B64::ToB64(text);
        ASSERT_TRUE(bytes.IsValid());
        EXPECT_EQ(ContentsOf(bytes), expected);
    }
}

TEST(Base64Test, DecodesEachUtf8ByteOfANonAsciiCharacterAsZero)
{
    // "é" has two bytes in UTF-8, so "QéJ" is one group of four.
    EXPECT_EQ(ContentsOf(B64::ToB64(L"Q\u00e9J")), std::string("@\0\x09", 3));
}

TEST(Base64Test, DecodesAWideStringUpToItsFirstNull)
{
    EXPECT_EQ(ContentsOf(B64::ToB64(std::wstring(L"QUJD\0QUJD", 9))), "ABC");
}

TEST(Base64Test, ReturnsNoBytesForAStringThatUtf8CannotEncode)
{
    const smart_ptr<Bytes> bytes = B64::ToB64(L"QUJD" + std::wstring(1, wchar_t(0x110000)));

    ASSERT_TRUE(bytes.IsValid());
    EXPECT_EQ(ContentsOf(bytes), "");
}

} // namespace
} // namespace Toolkit
