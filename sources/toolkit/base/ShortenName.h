#pragma once

#include <cstddef>
#include <string>

namespace Toolkit::Base {

/// Returns `name` if it has at most `maxLength` bytes; otherwise its beginning and a hash of the
/// whole name, `maxLength` bytes in total. The cut may split a UTF-8 character. Equal names have
/// equal results in all processes. `maxLength` must be at least 16.
std::string ShortenName(const std::string& name, std::size_t maxLength);

/// Returns a hash of `text` as sixteen hexadecimal digits.
std::string FormatHash(const std::string& text);

} // namespace Toolkit::Base
