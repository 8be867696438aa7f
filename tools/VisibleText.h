#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// Appends untrusted `text` in a form that a terminal shows and does not act on. The escape
/// character becomes "\x1B", a right-to-left override "\x202E", and a byte E9 that is not part of
/// UTF-8 "\xE9". Backslashes stay, so the result does not show whether `text` contains "\x1B"
/// or an escape character.
void AppendVisible(std::string& target, std::string_view text);

/// Returns `text` in the form of AppendVisible().
std::string MakeVisible(std::string_view text);

} // namespace Tool
