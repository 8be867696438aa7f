#pragma once

#include "toolkit/core/Export.h"

#include <string>
#include <utility>
#include <vector>

/// The string type of the library: the standard string with operations that applications need.
/// The class is global; `Toolkit::TString` is another name for it.
///
/// `TString<wchar_t>` holds one code point per character; `TString<char>` holds bytes such as
/// UTF-8. All operations of the standard string are available. One object is used by one thread at
/// a time. When out of memory, an operation throws std::bad_alloc and leaves the string as it was.
template <typename T>
class TOOLKIT_API TString : public std::basic_string<T> {
public:
    TString() = default;

    /// Copies the null-terminated `text`; empty for a null pointer.
    TString(const T* text)
    {
        if (text)
            this->assign(text);
    }

    TString(const std::basic_string<T>& text) : std::basic_string<T>(text) {}
    TString(std::basic_string<T>&& text) noexcept : std::basic_string<T>(std::move(text)) {}

    /// Stores exactly one character, which may be the null character.
    TString(const T& character) : std::basic_string<T>(1, character) {}

    /// Returns the one empty string that the whole process shares.
    static const TString& Empty();

    /// Compares without regard to case: returns -1, 0 or 1 if this string is less than, equal to or
    /// greater than `other`.
    ///
    /// Folds characters with the C library's `towlower` in the current C locale, and compares them
    /// as signed numbers. Narrow strings pass their bytes to `tolower` as signed values.
    int compareNoCase(const TString& other) const;

    /// Whether this string contains `needle`, without regard to case. Every string contains the
    /// empty one.
    ///
    /// Both strings end at their first null character. The narrow `tolower` folds wide strings too:
    /// characters above U+00FF only match themselves.
    bool HasSubstring(const TString& needle) const;

    // Only wide strings have the operations below.

    /// Removes spaces (U+0020) and tabs (U+0009) at both ends; no other white space.
    TString& Trim();

    /// Folds each character with the narrow `tolower` in the current C locale. Characters above
    /// U+00FF and negative ones stay as they are.
    TString& ToLower();

    /// Replaces every occurrence of `from` with `to`, until the string contains none.
    ///
    /// Each search starts at the beginning again, so occurrences that a replacement creates are
    /// replaced too: replacing "ab" with "b" turns "aab" into "b". An empty `from` changes nothing.
    ///
    /// Always ends if `to` is shorter than `from`, is as long but not equal to it, or contains some
    /// character fewer times than `from` does. Any other replacement may never end, or end only
    /// when out of memory: for every string that contains `from` if `to` contains `from`; for some
    /// strings if a replacement and its neighbours create new occurrences, such as replacing "ab"
    /// with "bbaa" in "aab".
    void Replace(const TString& from, const TString& to);

    /// Returns the unsigned decimal number at the beginning of the string, after white space; 0 if
    /// there is none. A number that is too large gives 4294967295, and so does "-1" by wrapping.
    unsigned int ToUint32() const;

    /// Returns the decimal number at the beginning of the string, after white space; 0 if there is
    /// none. A number out of range gives the nearest limit.
    int ToInt32() const;

    /// Splits the string at each character that is one of `delimiters`, and replaces the contents
    /// of `tokens` with the parts.
    ///
    /// Without `skipEmpty`, "a,,b" gives "a", "", "b"; ",a," gives "", "a", ""; the empty string
    /// gives one empty token. With `skipEmpty`, empty tokens are left out: the empty string gives
    /// none. If GetTokens() throws std::bad_alloc, `tokens` is empty; it may be unchanged if this
    /// string or `delimiters` is one of its elements.
    void GetTokens(const TString& delimiters, std::vector<TString>& tokens, bool skipEmpty) const;
};

/// @cond Documented above: Doxygen would list specializations as further members.
template <>
TOOLKIT_API const TString<char>& TString<char>::Empty();
template <>
TOOLKIT_API const TString<wchar_t>& TString<wchar_t>::Empty();
template <>
TOOLKIT_API int TString<char>::compareNoCase(const TString& other) const;
template <>
TOOLKIT_API int TString<wchar_t>::compareNoCase(const TString& other) const;
template <>
TOOLKIT_API bool TString<char>::HasSubstring(const TString& needle) const;
template <>
TOOLKIT_API bool TString<wchar_t>::HasSubstring(const TString& needle) const;

template <>
TOOLKIT_API TString<wchar_t>& TString<wchar_t>::Trim();
template <>
TOOLKIT_API TString<wchar_t>& TString<wchar_t>::ToLower();
template <>
TOOLKIT_API void TString<wchar_t>::Replace(const TString& from, const TString& to);
template <>
TOOLKIT_API unsigned int TString<wchar_t>::ToUint32() const;
template <>
TOOLKIT_API int TString<wchar_t>::ToInt32() const;
template <>
TOOLKIT_API void TString<wchar_t>::GetTokens(const TString& delimiters,
                                             std::vector<TString>& tokens, bool skipEmpty) const;

template <>
TString<char>& TString<char>::Trim() = delete;
template <>
TString<char>& TString<char>::ToLower() = delete;
template <>
void TString<char>::Replace(const TString& from, const TString& to) = delete;
template <>
unsigned int TString<char>::ToUint32() const = delete;
template <>
int TString<char>::ToInt32() const = delete;
template <>
void TString<char>::GetTokens(const TString& delimiters, std::vector<TString>& tokens,
                              bool skipEmpty) const = delete;
/// @endcond

namespace Toolkit {

using ::TString;

} // namespace Toolkit
