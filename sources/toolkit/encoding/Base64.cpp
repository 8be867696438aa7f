#include "toolkit/encoding/Base64.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/encoding/Base64Codec.Private.h"
#include "toolkit/encoding/UTF8.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>

namespace {

// The longest input that is encoded or decoded: GetCodeLength() and GetDataLength() take an int.
constexpr unsigned int c_maxInputLength = std::numeric_limits<int>::max();

// Like GetCodeLength(), but takes any length and returns 0 for a result of 2 GiB or more.
int ComputeCodeLength(unsigned int length)
{
    return length <= c_maxInputLength ? std::max(GetCodeLength(static_cast<int>(length)), 0) : 0;
}

// Returns null when out of memory. The caller frees the array with `delete[]`.
unsigned char* Allocate(int size)
{
    return new (std::nothrow) unsigned char[static_cast<std::size_t>(size)];
}

} // namespace

int GetCodeLength(int length)
{
    const int groups = length / 3 + (length % 3 > 0 ? 1 : 0);
    // Unsigned, so that a result of 2 GiB or more wraps around to a negative one.
    return static_cast<int>(4u * static_cast<unsigned int>(groups));
}

int GetDataLength(int length)
{
    return length - length / 4;
}

bool b64_decode_binary(const unsigned char* in, unsigned int length, unsigned char** out,
                       unsigned int* outLength)
{
    const int size = ComputeCodeLength(length);
    if (size == 0 || !in || !out || !outLength)
        return false;
    unsigned char* const code = Allocate(size);
    if (!code)
        return false;
    Toolkit::EncodeBase64(in, length, code);
    *out = code;
    *outLength = static_cast<unsigned int>(size);
    return true;
}

bool b64_encode_binary(const unsigned char* in, unsigned int length, unsigned char** out,
                       unsigned int* outLength)
{
    if (length == 0 || length > c_maxInputLength || !in || !out || !outLength)
        return false;
    const int size = GetDataLength(static_cast<int>(length));
    unsigned char* const data = Allocate(size);
    if (!data)
        return false;
    const std::size_t decoded = Toolkit::DecodeBase64(in, length, data);
    // The header promises zeros after the decoded bytes.
    std::memset(data + decoded, 0, static_cast<std::size_t>(size) - decoded);
    *outLength = static_cast<unsigned int>(decoded);
    *out = data;
    return true;
}

namespace Toolkit {
namespace {

// In bytes. A multiple of 3, so that only the last chunk is padded, and small enough for the
// buffers of Encode() to stay in the L1 cache.
constexpr std::size_t c_chunkLength = 768;

// Returns the Base64 form as a wide string. Encodes in chunks, so that the narrow characters need
// only a small buffer.
std::wstring Encode(const unsigned char* bytes, std::size_t length)
{
    std::wstring text;
    text.reserve((length + 2) / 3 * 4);
    constexpr std::size_t maxCodeLength = c_chunkLength / 3 * 4;
    unsigned char code[maxCodeLength];
    wchar_t characters[maxCodeLength];
    while (length > 0) {
        const std::size_t chunk = std::min(length, c_chunkLength);
        const std::size_t codeLength = (chunk + 2) / 3 * 4;
        EncodeBase64(bytes, chunk, code);
        std::copy_n(code, codeLength, characters);
        text.append(characters, codeLength);
        bytes += chunk;
        length -= chunk;
    }
    return text;
}

// Decodes in place: there are never more bytes than characters.
void Decode(std::string code, Bytes& bytes)
{
    if (code.size() > c_maxInputLength)
        return;
    auto* const data = reinterpret_cast<unsigned char*>(code.data());
    bytes.SetBytes(data, static_cast<unsigned int>(DecodeBase64(data, code.size(), data)));
}

} // namespace

TString<wchar_t> B64::ToUNICODE(const smart_ptr<Bytes>& bytes)
{
    unsigned char* copy = nullptr;
    unsigned int size = 0;
    if (!bytes.IsValid() || !bytes->GetBytes(&copy, &size))
        return {};
    const std::unique_ptr<unsigned char[]> owner(copy);
    if (ComputeCodeLength(size) == 0)
        return {};
    return Base::TryOr({}, [&] { return TString<wchar_t>(Encode(copy, size)); });
}

smart_ptr<Bytes> B64::ToB64(const TString<wchar_t>& text)
{
    const auto createBytes = [] { return smart_ptr<Bytes>(new Bytes); };
    const smart_ptr<Bytes> bytes = Base::TryOr(smart_ptr<Bytes>::Empty(), createBytes);
    if (bytes.IsValid())
        Decode(UTF8::ToUTF8(text), *bytes);
    return bytes;
}

} // namespace Toolkit
