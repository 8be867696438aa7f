#pragma once

#include <cstddef>
#include <string>

namespace Toolkit::Base {

/// Returns `name` if it has at most `longest` bytes; otherwise its beginning and a hash of the
/// whole name, `longest` bytes in total. Equal names have equal results. `longest` must be at least
/// 16.
std::string ShortenName(const std::string& name, std::size_t longest);

/// Returns a hash of `text` as sixteen hexadecimal digits.
std::string FormatHash(const std::string& text);

} // namespace Toolkit::Base
