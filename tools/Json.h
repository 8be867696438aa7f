#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// Appends `text`, which should be UTF-8, as a JSON string (RFC 8259). U+FFFD replaces each byte
/// that is not UTF-8. Characters for which IsUnsafeForTerminal() is true are escaped.
void AppendJson(std::string& target, std::string_view text);

} // namespace Tool
