#pragma once

namespace Toolkit {

/// Whether the null-terminated `needle` stands in the null-terminated `text` when both are folded
/// by the narrow `tolower`. Neither text is copied. Defined for char and wchar_t.
template <typename Char>
bool ContainsNoCase(const Char* text, const Char* needle);

} // namespace Toolkit
