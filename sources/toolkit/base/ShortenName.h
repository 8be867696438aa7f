#pragma once

#include <cstddef>
#include <string>

namespace Toolkit::Base {

/// `name`, when it has at most `longest` bytes; otherwise its beginning and a hash of the whole,
/// `longest` bytes together, so that all who shorten one name meet at one result. `longest` is 16
/// at least.
std::string ShortenName(const std::string& name, std::size_t longest);

/// Sixteen hexadecimal digits that stand for `text`.
std::string FormatHash(const std::string& text);

} // namespace Toolkit::Base
