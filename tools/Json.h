#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// Appends `text`, which is UTF-8, as a JSON string (RFC 8259). U+FFFD replaces each byte that
/// is not UTF-8; what VisibleText.h calls invisible is escaped.
void AppendJson(std::string& target, std::string_view text);

} // namespace Tool
