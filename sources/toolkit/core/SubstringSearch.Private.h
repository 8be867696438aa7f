#pragma once

namespace Toolkit {

/// Whether the null-terminated `text` contains the null-terminated `needle`, ignoring case:
/// compares the characters as the narrow `tolower` folds them. Copies neither string. Defined for
/// char and wchar_t.
template <typename Char>
bool ContainsNoCase(const Char* text, const Char* needle);

} // namespace Toolkit
