#pragma once

#include <cstddef>
#include <string>

/// The quoted-printable form of bytes. It differs from RFC 2045, section 6.7: it escapes more than
/// necessary, and of a soft line break it removes only the "=".
namespace Toolkit::QuotedPrintableCodec {

/// Whether `byte` is above 0x7F or must be escaped. False for 0x7F, although `AppendEncoded`
/// escapes it.
bool IsQuoted(char byte);

/// Appends the form of `length` bytes, on one line.
void AppendEncoded(std::string& code, const char* bytes, std::size_t length);

/// Appends the decoded form of `length` characters.
void AppendDecoded(std::string& bytes, const char* code, std::size_t length);

/// Returns `code`, from `AppendEncoded`, with soft line breaks; see `QP::ToQP`.
std::string WithSoftBreaks(const std::string& code, unsigned int firstLineLength,
                           unsigned int lineLength);

} // namespace Toolkit::QuotedPrintableCodec
