#pragma once

#include <cstddef>
#include <string>

/// The quoted-printable form of bytes. It differs from RFC 2045, section 6.7: more is escaped than
/// need be, and soft line breaks are read half.
namespace Toolkit::QuotedPrintableCodec {

/// Whether `byte` is above 0x7F or one of those that have to be escaped. 0x7F is not, though
/// `AppendEncoded` escapes it.
bool IsQuoted(char byte);

/// Appends the form of `length` bytes, on one line.
void AppendEncoded(std::string& code, const char* bytes, std::size_t length);

/// Appends the bytes that `length` characters stand for.
void AppendDecoded(std::string& bytes, const char* code, std::size_t length);

/// What `AppendEncoded` made, with soft line breaks; see `QP::ToQP`.
std::string WithSoftBreaks(const std::string& code, unsigned int firstLineLength,
                           unsigned int lineLength);

} // namespace Toolkit::QuotedPrintableCodec
