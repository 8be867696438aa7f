#include "toolkit/encoding/Base64Codec.Private.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace Toolkit {
namespace {

// RFC 4648, section 4.
constexpr char c_alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned char c_pad = '=';

constexpr std::size_t c_groupBytes = 3;
constexpr std::size_t c_groupCharacters = 4;

struct Pair {
    char characters[2];
};

// The two characters for each 12-bit value.
//
// Base64Encode/10239: looking each character up takes 2.7 times as long.
constexpr auto c_pairs = [] {
    std::array<Pair, 4096> pairs{};
    for (std::size_t bits = 0; bits < pairs.size(); ++bits)
        pairs[bits] = {{c_alphabet[bits >> 6], c_alphabet[bits & 63]}};
    return pairs;
}();

// Marks a pad: the bit above the 24 bits of a group.
constexpr std::uint32_t c_padBit = 1u << 24;

using Digits = std::array<std::uint32_t, 256>;

// For each place in a group, the digit of each character, shifted to the bits of that place;
// c_padBit for a pad and 0 for unknown characters.
//
// Base64Decode/10239: one table, shifts and a test for each pad take 1.4 times as long.
constexpr auto c_digits = [] {
    std::array<Digits, c_groupCharacters> digits{};
    for (std::size_t place = 0; place < digits.size(); ++place) {
        for (std::uint32_t value = 0; value < 64; ++value) {
            const auto character = static_cast<unsigned char>(c_alphabet[value]);
            digits[place][character] = value << (3 - place) * 6;
        }
        digits[place][c_pad] = c_padBit;
    }
    return digits;
}();

// Encodes six bytes as eight characters. Also reads the two bytes after them.
inline void EncodeTwoGroups(const unsigned char* in, unsigned char* out)
{
    // Independent of the byte order. Compilers merge the bytes into one load.
    const std::uint64_t bits = std::uint64_t{in[0]} << 56 | std::uint64_t{in[1]} << 48 |
                               std::uint64_t{in[2]} << 40 | std::uint64_t{in[3]} << 32 |
                               std::uint64_t{in[4]} << 24 | std::uint64_t{in[5]} << 16 |
                               std::uint64_t{in[6]} << 8 | std::uint64_t{in[7]};
    std::memcpy(out, &c_pairs[bits >> 52], 2);
    std::memcpy(out + 2, &c_pairs[bits >> 40 & 4095], 2);
    std::memcpy(out + 4, &c_pairs[bits >> 28 & 4095], 2);
    std::memcpy(out + 6, &c_pairs[bits >> 16 & 4095], 2);
}

inline void EncodeBits(std::uint32_t bits, unsigned char* out)
{
    std::memcpy(out, &c_pairs[bits >> 12], 2);
    std::memcpy(out + 2, &c_pairs[bits & 4095], 2);
}

inline void EncodeGroup(const unsigned char* in, unsigned char* out)
{
    EncodeBits(std::uint32_t{in[0]} << 16 | std::uint32_t{in[1]} << 8 | in[2], out);
}

// Encodes the last group, of one byte or two.
void EncodeLastGroup(const unsigned char* in, std::size_t length, unsigned char* out)
{
    const std::uint32_t second = length > 1 ? in[1] : 0u;
    EncodeBits(std::uint32_t{in[0]} << 16 | second << 8, out);
    out[3] = c_pad;
    if (length < 2)
        out[2] = c_pad;
}

inline std::uint32_t ReadGroup(const unsigned char* in)
{
    return c_digits[0][in[0]] | c_digits[1][in[1]] | c_digits[2][in[2]] | c_digits[3][in[3]];
}

// Decodes a group up to its first pad. A group without a pad is incomplete and decodes to nothing.
std::size_t DecodeLastGroup(const unsigned char* in, std::size_t length, unsigned char* out)
{
    std::uint32_t bits = 0;
    for (std::size_t place = 0; place < length; ++place) {
        if (in[place] != c_pad) {
            bits |= c_digits[place][in[place]];
            continue;
        }
        out[0] = static_cast<unsigned char>(bits >> 16);
        if (place < 3)
            return 1;
        out[1] = static_cast<unsigned char>(bits >> 8);
        return 2;
    }
    return 0;
}

} // namespace

void EncodeBase64(const unsigned char* in, std::size_t length, unsigned char* out)
{
    constexpr std::size_t step = 4 * c_groupBytes;
    for (; length >= step + 2; length -= step) {
        EncodeTwoGroups(in, out);
        EncodeTwoGroups(in + step / 2, out + 8);
        in += step;
        out += 4 * c_groupCharacters;
    }
    for (; length >= c_groupBytes; length -= c_groupBytes) {
        EncodeGroup(in, out);
        in += c_groupBytes;
        out += c_groupCharacters;
    }
    if (length > 0)
        EncodeLastGroup(in, length, out);
}

std::size_t DecodeBase64(const unsigned char* in, std::size_t length, unsigned char* out)
{
    const unsigned char* const start = out;
    for (; length >= c_groupCharacters; length -= c_groupCharacters) {
        const std::uint32_t bits = ReadGroup(in);
        if (bits >= c_padBit)
            break;
        out[0] = static_cast<unsigned char>(bits >> 16);
        out[1] = static_cast<unsigned char>(bits >> 8);
        out[2] = static_cast<unsigned char>(bits);
        in += c_groupCharacters;
        out += c_groupBytes;
    }
    const std::size_t lastLength = std::min(length, c_groupCharacters);
    return static_cast<std::size_t>(out - start) + DecodeLastGroup(in, lastLength, out);
}

} // namespace Toolkit
