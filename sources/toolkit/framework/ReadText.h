#pragma once

#include <string>

namespace Toolkit::Framework {

/// Replaces `text` with the contents of the text file `path`, as UTF-8 without a byte-order mark.
/// False when the file cannot be read or decoded; `text` is then unspecified.
///
/// A byte-order mark of UTF-16 or UTF-32 decides the encoding, and every mark is dropped. Any other
/// file is read as UTF-8, or as ISO 8859-1 if anything in it is not valid UTF-8.
bool ReadText(const std::string& path, std::string& text);

} // namespace Toolkit::Framework
