// Encoded bytes decode to the same bytes; any string decodes like a character-by-character
// reference.

#include "toolkit/encoding/Base64.h"

#include "references/Base64.h"
#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace Toolkit;

// Requires that `operation` succeeds, except for an empty input.
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // Despite their names, b64_decode_binary() encodes and b64_encode_binary() decodes.
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string code = Convert(b64_decode_binary, bytes);
    const std::wstring text(code.begin(), code.end());

    Require(code.size() == static_cast<std::size_t>(GetCodeLength(static_cast<int>(size))));
    Require(Convert(b64_encode_binary, code) == bytes);
    Require(Convert(b64_encode_binary, bytes) == References::DecodeBase64(bytes));

    const smart_ptr<Bytes> buffer(new Bytes(data, static_cast<unsigned int>(size)));
    Require(B64::ToUNICODE(buffer) == text);
    Require(References::ContentsOf(B64::ToB64(text)) == bytes);
    return 0;
}
