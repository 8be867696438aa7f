#pragma once

#include <cstddef>

/// The transfer encoding of RFC 4648, section 4, between arrays of the caller.
namespace Toolkit::Base64Codec {

/// Writes the form of `length` bytes to `out`: four characters for each three of them.
void Encode(const unsigned char* in, std::size_t length, unsigned char* out);

/// Writes what `length` characters stand for to `out`, which has room for three bytes for each four
/// of them and for one byte for each of a last one to three; returns how many there are.
std::size_t Decode(const unsigned char* in, std::size_t length, unsigned char* out);

} // namespace Toolkit::Base64Codec
