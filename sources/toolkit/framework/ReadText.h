#pragma once

#include <string>

namespace Toolkit::Framework {

/// Replaces `text` with the contents of the text file `path`, as UTF-8 without a byte-order mark.
/// Returns false if the file cannot be read or decoded; `text` is then unspecified. Throws
/// `std::bad_alloc`.
///
/// A file that begins with a byte-order mark of UTF-16 or UTF-32 is read in that encoding. Any
/// other file is read as UTF-8, or as ISO 8859-1 if anything in it is not valid UTF-8.
bool ReadText(const std::string& path, std::string& text);

} // namespace Toolkit::Framework
