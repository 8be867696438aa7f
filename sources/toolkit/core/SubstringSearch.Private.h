#pragma once

namespace Toolkit {

/// Whether the null-terminated `text` contains the null-terminated `needle` after the narrow
/// `tolower` folds both. Copies neither. Defined for char and wchar_t.
template <typename Char>
bool ContainsNoCase(const Char* text, const Char* needle);

} // namespace Toolkit
