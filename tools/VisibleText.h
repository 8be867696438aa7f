#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// Appends `text`, which is UTF-8 from elsewhere, so that a terminal shows it and does not act on
/// it: an escape character becomes "\x1B", an override of the text's direction "\x202E", and a
/// byte that is not UTF-8 "\xE9".
void AppendVisible(std::string& target, std::string_view text);

std::string MakeVisible(std::string_view text);

} // namespace Tool
