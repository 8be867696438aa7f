#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Converts wide strings to UTF-8 (RFC 3629) and back.
///
/// Any thread may call the operations; nothing is thrown or logged. When out of memory, they return
/// an empty string.
class TOOLKIT_API UTF8 {
public:
    /// Encodes `text`, up to its first null character, as UTF-8.
    ///
    /// A surrogate is encoded as three bytes. Returns an empty string if a value before the first
    /// null character is negative or above U+10FFFF.
    static TString<char> ToUTF8(const TString<wchar_t>& text);

    /// Decodes `text`, up to its first null byte, from UTF-8.
    ///
    /// Returns an empty string if that is not valid UTF-8: an overlong or truncated form, a
    /// surrogate, or a value above U+10FFFF.
    static TString<wchar_t> ToUNICODE(const TString<char>& text);

    /// Whether ToUTF8() returns more bytes than `text` has characters: for a valid `text` without
    /// null characters, whether it contains a character above U+007F.
    static bool HasToBeUTF8(const TString<wchar_t>& text);
};

} // namespace Toolkit
