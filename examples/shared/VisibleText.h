#pragma once

#include <toolkit/core/TString.h>

/// Whether a terminal acts on the character instead of showing it: control characters, line and
/// paragraph separators, and the marks that change the direction of text.
inline bool IsInvisible(wchar_t character)
{
    const auto code = static_cast<char32_t>(character);
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x061C ||
           (code >= 0x200E && code <= 0x200F) || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

/// Makes untrusted text, such as the name of an archive entry, safe to show and log: an escape
/// character becomes "\x1B", a right-to-left override "\x202E".
inline TString<wchar_t> MakeVisible(const TString<wchar_t>& text)
{
    constexpr const wchar_t* digits = L"0123456789ABCDEF";

    TString<wchar_t> visible;
    for (const wchar_t character : text) {
        if (!IsInvisible(character)) {
            visible += character;
            continue;
        }
        const auto code = static_cast<char32_t>(character);
        visible += L"\\x";
        for (int shift = code > 0xFF ? 12 : 4; shift >= 0; shift -= 4)
            visible += digits[code >> shift & 0xF];
    }
    return visible;
}
