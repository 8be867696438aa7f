#include "Base64File.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <toolkit/encoding/Base64.h>

#include "InputFile.h"

namespace {

constexpr std::size_t c_lineLength = 76;    // RFC 2045, section 6.8
constexpr unsigned int c_bytesPerLine = 57; // encoded by a full line
// A multiple of c_bytesPerLine, so that only the last line of an encoded file is shorter.
constexpr unsigned int c_blockSize = 1024 * c_bytesPerLine;

// The names of the library's two functions are swapped.
using Codec = bool (*)(const unsigned char*, unsigned int, unsigned char**, unsigned int*);
constexpr Codec c_encode = b64_decode_binary;
constexpr Codec c_decode = b64_encode_binary;

// `input` must not be empty. Throws `std::bad_alloc` when out of memory.
std::string Convert(Codec codec, const std::string& input)
{
    unsigned char* output = nullptr;
    unsigned int length = 0;
    if (!codec(reinterpret_cast<const unsigned char*>(input.data()),
               static_cast<unsigned int>(input.size()), &output, &length))
        throw std::bad_alloc();
    const std::unique_ptr<unsigned char[]> owner(output);
    return std::string(output, output + length);
}

bool WriteLines(const std::string& code, HostPlugIn::CommandRun& run)
{
    std::string lines;
    for (std::size_t begin = 0; begin < code.size(); begin += c_lineLength)
        lines += code.substr(begin, c_lineLength) + '\n';
    return run.Write(lines.data(), lines.size());
}

bool IsWhiteSpace(char character)
{
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

// Removes the complete groups of four characters from the front of `digits` and returns them.
std::string ExtractGroups(std::string& digits)
{
    const std::size_t length = digits.size() / 4 * 4;
    std::string groups = digits.substr(0, length);
    digits.erase(0, length);
    return groups;
}

// Whether groups are all digits, end in padding ("="), or are not Base64.
enum class Kind { Digits, Padded, Invalid };

// Checks the characters, because the decoder treats any character as a digit.
Kind FindKind(const std::string& groups)
{
    const std::size_t end = groups.find_first_not_of(
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
    if (end == std::string::npos)
        return Kind::Digits;
    const bool isPadding =
        end + 2 >= groups.size() && groups.find_first_not_of('=', end) == std::string::npos;
    return isPadding ? Kind::Padded : Kind::Invalid;
}

bool FailOnInput(HostPlugIn::CommandRun& run)
{
    return run.Fail(run.GetValue(L"in") + L" is not Base64");
}

} // namespace

bool EncodeToBase64(HostPlugIn::CommandRun& run)
{
    InputFile file(run);
    if (!file.Open())
        return false;

    std::string block;
    while (file.Read(block, c_blockSize)) {
        if (!WriteLines(Convert(c_encode, block), run))
            return false;
    }
    return file.IsAtEnd();
}

bool DecodeFromBase64(HostPlugIn::CommandRun& run)
{
    InputFile file(run);
    if (!file.Open())
        return false;

    std::string block;
    std::string digits;
    Kind kind = Kind::Digits;
    while (file.Read(block, c_blockSize)) {
        std::copy_if(block.begin(), block.end(), std::back_inserter(digits),
                     [](char character) { return !IsWhiteSpace(character); });
        const std::string groups = ExtractGroups(digits);
        if (groups.empty())
            continue;
        if (kind == Kind::Padded) // nothing may follow padding
            return FailOnInput(run);
        kind = FindKind(groups);
        if (kind == Kind::Invalid)
            return FailOnInput(run);
        const std::string bytes = Convert(c_decode, groups);
        if (!run.Write(bytes.data(), bytes.size()))
            return false;
    }
    return digits.empty() ? file.IsAtEnd() : FailOnInput(run);
}
