#pragma once

#include <string_view>

namespace Tool {

/// A UTF-8 character, or a byte that is not part of one: `isValid` is false for such a byte, and
/// `code` is its value.
struct Character {
    char32_t code;
    bool isValid;
    std::string_view bytes;
};

/// Reads the first character of `text` and removes it from `text`, which must not be empty.
Character ReadCharacter(std::string_view& text);

/// Whether a terminal may interpret the character instead of displaying it: control characters,
/// line and paragraph separators, characters that change the direction of text, and U+FEFF.
bool IsUnsafeForTerminal(char32_t code);

} // namespace Tool
