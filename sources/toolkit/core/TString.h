#pragma once

#include "toolkit/core/Export.h"

#include <string>
#include <utility>
#include <vector>

/// The text type of the library: the standard string with the operations that applications miss.
///
/// `TString<wchar_t>` holds one code point per character; `TString<char>` carries byte-oriented
/// text such as UTF-8. Every operation of the standard string is there. One value is used by one
/// thread at a time. Without memory std::bad_alloc leaves an operation and the text is as it was.
template <typename T>
class TOOLKIT_API TString : public std::basic_string<T> {
public:
    TString() = default;

    /// A copy of the null-terminated `text`; a null pointer gives the empty text.
    TString(const T* text)
    {
        if (text)
            this->assign(text);
    }

    TString(const std::basic_string<T>& text) : std::basic_string<T>(text) {}
    TString(std::basic_string<T>&& text) noexcept : std::basic_string<T>(std::move(text)) {}

    /// Exactly one character, which may be the null character.
    TString(const T& character) : std::basic_string<T>(1, character) {}

    /// The one empty text that is shared by the whole process.
    static const TString& Empty();

    /// -1, 0 or 1 as this text stands before, with or after `other`, regardless of case.
    ///
    /// Characters are folded by the C library's `towlower` (`tolower` for narrow text, which gets
    /// its bytes as signed values) in the current C locale and compared as signed numbers.
    int compareNoCase(const TString& other) const;

    /// Whether `needle` stands anywhere in this text, regardless of case. The empty text always
    /// does.
    ///
    /// Both texts end at their first null character. Case is folded by the narrow `tolower` in wide
    /// text too: characters above U+00FF only match themselves.
    bool HasSubstring(const TString& needle) const;

    // The operations below are those of wide text.

    /// Removes blanks (U+0020) and tabs (U+0009) at both ends; no other white space.
    TString& Trim();

    /// Folds each character by the narrow `tolower` in the current C locale; characters above
    /// U+00FF and negative ones stay as they are.
    TString& ToLower();

    /// Replaces every occurrence of `from` by `to`, until the text holds none.
    ///
    /// Each search starts at the beginning again, so occurrences that a replacement creates are
    /// replaced too: "aab" with "ab" replaced by "b" gives "b". An empty `from` changes nothing.
    ///
    /// Ends when `to` is shorter than `from`, is as long but not equal to it, or holds some
    /// character fewer times than `from` does. Other pairs may never end: if `to` contains `from`,
    /// that is so for every text that contains `from`; if a replacement and its neighbours create
    /// new occurrences, for some texts, such as "aab" with "ab" replaced by "bbaa".
    void Replace(const TString& from, const TString& to);

    /// The unsigned decimal number that the text begins with, after white space; 0 when there is
    /// none. Too large a number gives 4294967295; "-1" does too, by wrapping around.
    unsigned int ToUint32() const;

    /// The decimal number that the text begins with, after white space; 0 when there is none. A
    /// number out of range gives the limit on its side.
    int ToInt32() const;

    /// Splits the text at each character that is one of `delimiters` and replaces the contents of
    /// `tokens` by the pieces.
    ///
    /// Without `skipEmpty` "a,,b" gives "a", "", "b", ",a," gives "", "a", "", and the empty text
    /// gives one empty token. With it no token is empty, and the empty text gives none. When
    /// std::bad_alloc leaves it, `tokens` is empty.
    void GetTokens(const TString& delimiters, std::vector<TString>& tokens, bool skipEmpty) const;
};

/// @cond Documented above; Doxygen takes specialisations for members that it does not know.
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
