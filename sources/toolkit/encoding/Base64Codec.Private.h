#pragma once

#include <cstddef>

namespace Toolkit {

// Encodes and decodes Base64 (RFC 4648, section 4) between the caller's arrays.

/// Encodes `length` bytes into `out`: four characters for every three bytes, rounded up.
void EncodeBase64(const unsigned char* in, std::size_t length, unsigned char* out);

/// Decodes `length` characters and returns the number of bytes. `out` must have room for three
/// bytes per group of four characters, and for one byte per character of an incomplete last group.
/// It may be the same array as `in`.
std::size_t DecodeBase64(const unsigned char* in, std::size_t length, unsigned char* out);

} // namespace Toolkit
