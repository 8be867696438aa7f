#pragma once

#include <cstddef>
#include <string>

namespace Toolkit {

// Encodes and decodes quoted-printable. The encoder escapes more than RFC 2045, section 6.7,
// requires. The decoder deviates from it: see `QP::ToUNICODE`.

/// Whether AppendEncodedQuotedPrintable() escapes `byte`, with one exception: false for 0x7F, which
/// is escaped too.
bool NeedsEscape(char byte);

/// Encodes `length` bytes and appends the result to `encoded`, on one line.
void AppendEncodedQuotedPrintable(std::string& encoded, const char* bytes, std::size_t length);

/// Decodes `length` characters of `encoded` and appends the result to `bytes`.
void AppendDecodedQuotedPrintable(std::string& bytes, const char* encoded, std::size_t length);

/// Returns `encoded` with soft line breaks; see `QP::ToQP`. `encoded` must come from
/// AppendEncodedQuotedPrintable().
std::string InsertSoftBreaks(const std::string& encoded, unsigned int firstLineLength,
                             unsigned int lineLength);

} // namespace Toolkit
