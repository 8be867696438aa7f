#pragma once

#include "toolkit/core/Export.h"

#include <string>
#include <utility>
#include <vector>

/// The string type of the library: the standard string with the operations that applications need.
/// The class is global; `Toolkit::TString` is another name for it.
///
/// `TString<wchar_t>` holds one code point per character; `TString<char>` holds bytes such as
/// UTF-8. All operations of the standard string are available. One object is used by one thread at
/// a time. When out of memory, an operation throws std::bad_alloc and leaves the text as it was.
template <typename T>
class TOOLKIT_API TString : public std::basic_string<T> {
public:
    TString() = default;

    /// A copy of the null-terminated `text`; empty for a null pointer.
    TString(const T* text)
    {
        if (text)
            this->assign(text);
    }

    TString(const std::basic_string<T>& text) : std::basic_string<T>(text) {}
    TString(std::basic_string<T>&& text) noexcept : std::basic_string<T>(std::move(text)) {}

    /// Exactly one character, which may be the null character.
    TString(const T& character) : std::basic_string<T>(1, character) {}

    /// The one empty string that the whole process shares.
    static const TString& Empty();

    /// Compares without regard to case: -1, 0 or 1 when this string is less than, equal to or
    /// greater than `other`.
    ///
    /// Folds characters with the C library's `towlower` in the current C locale, and compares them
    /// as signed numbers. Narrow strings use `tolower`, which gets the bytes as signed values.
    int compareNoCase(const TString& other) const;

    /// Whether this string contains `needle`, without regard to case. Every string contains the
    /// empty one.
    ///
    /// Both strings end at their first null character. Wide strings too are folded by the narrow
    /// `tolower`: characters above U+00FF only match themselves.
    bool HasSubstring(const TString& needle) const;

    // The operations below are those of wide strings.

    /// Removes spaces (U+0020) and tabs (U+0009) at both ends; no other white space.
    TString& Trim();

    /// Folds each character with the narrow `tolower` in the current C locale. Characters above
    /// U+00FF and negative ones stay as they are.
    TString& ToLower();

    /// Replaces every occurrence of `from` by `to`, until the string contains none.
    ///
    /// Each search starts at the beginning again, so occurrences that a replacement creates are
    /// replaced too: "aab" with "ab" replaced by "b" gives "b". An empty `from` changes nothing.
    ///
    /// Ends when `to` is shorter than `from`, is as long but not equal to it, or holds some
    /// character fewer times than `from` does. Other pairs may never end: if `to` contains `from`,
    /// for every string that contains `from`; if a replacement and its neighbours create new
    /// occurrences, for some strings, such as "aab" with "ab" replaced by "bbaa".
    void Replace(const TString& from, const TString& to);

    /// The unsigned decimal number at the beginning of the string, after white space; 0 when there
    /// is none. A number that is too large gives 4294967295; so does "-1", by wrapping around.
    unsigned int ToUint32() const;

    /// The decimal number at the beginning of the string, after white space; 0 when there is none.
    /// A number out of range gives the nearest limit.
    int ToInt32() const;

    /// Splits the string at each character that is one of `delimiters`, and replaces the contents
    /// of `tokens` by the pieces.
    ///
    /// Without `skipEmpty` "a,,b" gives "a", "", "b"; ",a," gives "", "a", ""; the empty string
    /// gives one empty token. With it no token is empty, and the empty string gives none. When
    /// std::bad_alloc leaves it, `tokens` is empty.
    void GetTokens(const TString& delimiters, std::vector<TString>& tokens, bool skipEmpty) const;
};

/// @cond Documented above: Doxygen treats specializations as further members.
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
