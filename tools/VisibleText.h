#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// Appends `text`, which is untrusted UTF-8, so that a terminal shows it and does not act on it: an
/// escape character becomes "\x1B", a right-to-left override "\x202E", and a byte that is not UTF-8
/// for example "\xE9".
void AppendVisible(std::string& target, std::string_view text);

std::string MakeVisible(std::string_view text);

} // namespace Tool
