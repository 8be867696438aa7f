#pragma once

#include <cstddef>
#include <string>

namespace Toolkit {

// The quoted-printable form of bytes. It differs from RFC 2045, section 6.7: it escapes more than
// necessary, and of a soft line break it removes only the "=".

/// Whether `byte` is above 0x7F or must be escaped. False for 0x7F, although
/// `AppendEncodedQuotedPrintable` escapes it.
bool NeedsEscape(char byte);

/// Appends the form of `length` bytes, on one line.
void AppendEncodedQuotedPrintable(std::string& code, const char* bytes, std::size_t length);

/// Appends the decoded form of `length` characters.
void AppendDecodedQuotedPrintable(std::string& bytes, const char* code, std::size_t length);

/// Returns `code`, from `AppendEncodedQuotedPrintable`, with soft line breaks; see `QP::ToQP`.
std::string InsertSoftBreaks(const std::string& code, unsigned int firstLineLength,
                             unsigned int lineLength);

} // namespace Toolkit
