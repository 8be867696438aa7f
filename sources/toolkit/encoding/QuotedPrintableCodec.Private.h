#pragma once

#include <cstddef>
#include <string>

namespace Toolkit {

// Encodes and decodes quoted-printable. Differs from RFC 2045, section 6.7: the encoder escapes
// more than necessary, and the decoder removes only the "=" of a soft line break.

/// Whether `byte` is above 0x7F or must be escaped. False for 0x7F, although
/// `AppendEncodedQuotedPrintable` escapes it.
bool NeedsEscape(char byte);

/// Encodes `length` bytes and appends the result to `code`, on one line.
void AppendEncodedQuotedPrintable(std::string& code, const char* bytes, std::size_t length);

/// Decodes `length` characters of `code` and appends the result to `bytes`.
void AppendDecodedQuotedPrintable(std::string& bytes, const char* code, std::size_t length);

/// Returns `code` with soft line breaks; see `QP::ToQP`. `code` must come from
/// `AppendEncodedQuotedPrintable`.
std::string InsertSoftBreaks(const std::string& code, unsigned int firstLineLength,
                             unsigned int lineLength);

} // namespace Toolkit
