#pragma once

#include <cstddef>

namespace Toolkit {

// Base64 (RFC 4648, section 4). The caller provides the arrays.

/// Encodes `length` bytes into `out`: four characters for every three bytes, rounded up.
void EncodeBase64(const unsigned char* in, std::size_t length, unsigned char* out);

/// Decodes `length` characters and returns the number of bytes. `out` must have room for three
/// bytes per group of four characters, and for one more if the last group is incomplete. `out` may
/// equal `in`.
std::size_t DecodeBase64(const unsigned char* in, std::size_t length, unsigned char* out);

} // namespace Toolkit
