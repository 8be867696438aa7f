// Compares Base64 with a plain reference implementation on random strings and bytes, and with GLib
// on random bytes.

#include "toolkit/encoding/Base64.h"

#include "references/Base64.h"
#include "support/RandomText.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <glib.h>
#include <string>

namespace Toolkit {
namespace {

using References::c_base64Alphabet;
using References::ContentsOf;
using References::DecodeBase64;
using References::EncodeBase64;
using TestSupport::RandomText;

constexpr int c_rounds = 5000;

std::string CreateRandomBytes(RandomText& random, std::size_t maxSize)
{
    std::string bytes(random.Number<std::size_t>(0, maxSize), '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random.Number(0, 255));
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

TEST(Base64ReferenceTest, EncodesRandomBytesLikeTheReferenceAndDecodesThem)
{
    RandomText random(1);
    for (int round = 0; round < c_rounds; ++round) {
        const std::string bytes = CreateRandomBytes(random, 100);
        const std::string code = EncodeBase64(bytes);

        ASSERT_EQ(Convert(b64_decode_binary, bytes), code);
        ASSERT_EQ(Convert(b64_encode_binary, code), bytes);
    }
}

TEST(Base64ReferenceTest, DecodesRandomStringsLikeTheReference)
{
    RandomText random(2);
    const std::string extendedAlphabet =
        c_base64Alphabet + "\r\n -_=\x80\xFF" + std::string(1, '\0');
    for (int round = 0; round < c_rounds; ++round) {
        const std::string code =
            random.Text(round % 2 ? c_base64Alphabet + "=" : extendedAlphabet, 100);

        ASSERT_EQ(Convert(b64_encode_binary, code), DecodeBase64(code)) << code;
    }
}

TEST(Base64ReferenceTest, DecodesRandomWideStringsLikeTheReference)
{
    RandomText random(3);
    for (int round = 0; round < c_rounds; ++round) {
        const std::string code = random.Text(c_base64Alphabet + "=\n", 3000);

        ASSERT_EQ(ContentsOf(B64::ToB64(std::wstring(code.begin(), code.end()))),
                  DecodeBase64(code));
    }
}

TEST(Base64ReferenceTest, AgreesWithGLibOnRandomBytes)
{
    RandomText random(4);
    for (int round = 0; round < c_rounds; ++round) {
        const std::string bytes = "-" + CreateRandomBytes(random, 3000);
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
