// Bytes come back from their Base64 form; any text decodes as the rules say one character at a
// time.

#include "toolkit/encoding/Base64.h"

#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace Toolkit;

std::string Convert(bool (*operation)(const unsigned char*, unsigned int, unsigned char**,
                                      unsigned int*),
                    const std::string& in)
{
    unsigned char* out = nullptr;
    unsigned int length = 0;
    Require(operation(reinterpret_cast<const unsigned char*>(in.data()),
                      static_cast<unsigned int>(in.size()), &out, &length) != in.empty());
    const std::string result(reinterpret_cast<const char*>(out), length);
    delete[] out;
    return result;
}

std::string ReferenceDecode(const std::string& code)
{
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned int group = 0;
    for (std::size_t index = 0; index < code.size(); ++index) {
        const unsigned int place = index % 4;
        const std::size_t value = alphabet.find(code[index]);
        if (value != std::string::npos)
            group |= static_cast<unsigned int>(value) << (3 - place) * 6;
        const std::string whole = {static_cast<char>(group >> 16), static_cast<char>(group >> 8),
                                   static_cast<char>(group)};
        if (code[index] == '=')
            return bytes + whole.substr(0, place == 3 ? 2 : 1);
        if (place < 3)
            continue;
        bytes += whole;
        group = 0;
    }
    return bytes;
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string code = Convert(b64_decode_binary, bytes);
    const std::wstring text(code.begin(), code.end());

    Require(code.size() == static_cast<std::size_t>(GetCodeLength(static_cast<int>(size))));
    Require(Convert(b64_encode_binary, code) == bytes);
    Require(Convert(b64_encode_binary, bytes) == ReferenceDecode(bytes));

    const smart_ptr<Bytes> buffer(new Bytes(data, static_cast<unsigned int>(size)));
    Require(B64::ToUNICODE(buffer) == text);
    Require(ContentsOf(B64::ToB64(text)) == bytes);
    return 0;
}
