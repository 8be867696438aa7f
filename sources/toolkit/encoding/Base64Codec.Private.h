#pragma once

#include <cstddef>

/// The transfer encoding of RFC 4648, section 4, between arrays of the caller.
namespace Toolkit::Base64Codec {

/// Encodes `length` bytes into `out`: four characters for each three bytes or fewer.
void Encode(const unsigned char* in, std::size_t length, unsigned char* out);

/// Decodes `length` characters and returns how many bytes there are. `out` has room for three bytes
/// for each four characters and for one byte for each of a last one to three; it may be `in`.
std::size_t Decode(const unsigned char* in, std::size_t length, unsigned char* out);

} // namespace Toolkit::Base64Codec
