// Compares Base64 with the rules done one character at a time, on random texts, and for valid input
// with another library.

#include "toolkit/encoding/Base64.h"

#include "support/RandomText.h"

#include <gtest/gtest.h>

#include <glib.h>
#include <string>

namespace Toolkit {
namespace {

using Testing::RandomText;

constexpr int c_rounds = 5000;
const std::string c_alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string RandomBytes(RandomText& random, std::size_t longest)
{
    std::string bytes(random.Number<std::size_t>(0, longest), '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random.Number(0, 255));
    return bytes;
}

std::string ReferenceEncode(const std::string& bytes)
{
    std::string code;
    for (std::size_t index = 0; index < bytes.size(); index += 3) {
        unsigned int group = 0;
        for (std::size_t place = index; place < index + 3; ++place)
            group =
                group << 8 | (place < bytes.size() ? static_cast<unsigned char>(bytes[place]) : 0);
        const std::size_t left = bytes.size() - index;
        code += c_alphabet[group >> 18];
        code += c_alphabet[group >> 12 & 63];
        code += left >= 2 ? c_alphabet[group >> 6 & 63] : '=';
        code += left >= 3 ? c_alphabet[group & 63] : '=';
    }
    return code;
}

std::string ReferenceDecode(const std::string& code)
{
    std::string bytes;
    unsigned int group = 0;
    for (std::size_t index = 0; index < code.size(); ++index) {
        const unsigned int place = index % 4;
        const bool isPad = code[index] == '=';
        const std::size_t value = c_alphabet.find(code[index]);
        if (value != std::string::npos)
            group += static_cast<unsigned int>(value) << (3 - place) * 6;
        if (place != 3 && !isPad)
            continue;
        bytes += static_cast<char>(group >> 16);
        if (!isPad || place == 3)
            bytes += static_cast<char>(group >> 8);
        if (!isPad)
            bytes += static_cast<char>(group);
        group = 0;
        if (isPad)
            break;
    }
    return bytes;
}

template <typename Operation>
std::string Convert(Operation operation, const std::string& in)
{
    unsigned char* out = nullptr;
    unsigned int length = 0;
    EXPECT_EQ(operation(reinterpret_cast<const unsigned char*>(in.data()),
                        static_cast<unsigned int>(in.size()), &out, &length),
              !in.empty());
    const std::string result(reinterpret_cast<const char*>(out), length);
    delete[] out;
    return result;
}

std::string ContentsOf(const smart_ptr<Bytes>& bytes)
{
    unsigned char* copy = nullptr;
    unsigned int size = 0;
    bytes->GetBytes(&copy, &size);
    const std::string contents(reinterpret_cast<const char*>(copy), size);
    delete[] copy;
    return contents;
}

TEST(Base64ReferenceTest, RandomBytesAreEncodedAsByHandAndComeBack)
{
    RandomText random(1);
    for (int round = 0; round < c_rounds; ++round) {
        const std::string bytes = RandomBytes(random, 100);
        const std::string code = ReferenceEncode(bytes);

        ASSERT_EQ(Convert(b64_decode_binary, bytes), code);
        ASSERT_EQ(Convert(b64_encode_binary, code), bytes);
    }
}

TEST(Base64ReferenceTest, RandomTextsAreDecodedAsByHand)
{
    RandomText random(2);
    const std::string unclean = c_alphabet + "\r\n -_=\x80\xFF" + std::string(1, '\0');
    for (int round = 0; round < c_rounds; ++round) {
        const std::string code = random.Text(round % 2 ? c_alphabet + "=" : unclean, 100);

        ASSERT_EQ(Convert(b64_encode_binary, code), ReferenceDecode(code)) << code;
    }
}

TEST(Base64ReferenceTest, RandomWideTextsAreDecodedAsByHand)
{
    RandomText random(3);
    for (int round = 0; round < c_rounds; ++round) {
        const std::string code = random.Text(c_alphabet + "=\n", 3000);

        ASSERT_EQ(ContentsOf(B64::ToB64(std::wstring(code.begin(), code.end()))),
                  ReferenceDecode(code));
    }
}

TEST(Base64ReferenceTest, ValidTextsAreThoseOfAnotherLibrary)
{
    RandomText random(4);
    for (int round = 0; round < c_rounds; ++round) {
        const std::string bytes = "-" + RandomBytes(random, 3000);
        const auto* const data = reinterpret_cast<const unsigned char*>(bytes.data());
        gchar* const code = g_base64_encode(data, bytes.size());
        const std::string expected = code;
        g_free(code);

        const auto size = static_cast<unsigned int>(bytes.size());
        const TString<wchar_t> text = B64::ToUNICODE(smart_ptr<Bytes>(new Bytes(data, size)));
        ASSERT_EQ(std::string(text.begin(), text.end()), expected);
        ASSERT_EQ(ContentsOf(B64::ToB64(text)), bytes);
    }
}

} // namespace
} // namespace Toolkit
