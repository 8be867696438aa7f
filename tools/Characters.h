#pragma once

#include <string_view>

namespace Tool {

/// A UTF-8 character, or a byte that does not belong to one.
struct Character {
    char32_t code;
    bool isValid;
    std::string_view bytes;
};

/// Removes the first character of `text`, which is not empty.
Character TakeCharacter(std::string_view& text);

/// Whether a terminal acts on the character instead of showing it: control characters, line and
/// paragraph separators, and the marks that change the direction of text.
bool IsInvisible(char32_t code);

} // namespace Tool
