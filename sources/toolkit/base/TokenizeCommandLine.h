#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Toolkit::Base {

// The characters that separate tokens, and the quote that encloses a token containing separators.
inline constexpr wchar_t c_commandLineSeparators[] = L" \t";
inline constexpr wchar_t c_commandLineQuote = L'"';

/// Splits `line` at runs of `separators`. A token that begins with `quote` ends at the next
/// `quote`, even if no separator follows; if there is no second `quote`, the rest of the line is
/// dropped. Elsewhere in a token, `quote` is an ordinary character.
///
/// The tokens are views into `line`, without their quotes. Throws `std::bad_alloc`, so that callers
/// can tell out of memory from a line without tokens.
std::vector<std::wstring_view> TokenizeCommandLine(std::wstring_view line,
                                                   std::wstring_view separators, wchar_t quote);

} // namespace Toolkit::Base
