#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Converts wide strings to UTF-8 (RFC 3629) and back.
///
/// Any thread may call the operations; nothing is thrown or logged. When out of memory, the
/// conversions return an empty string.
class TOOLKIT_API UTF8 {
public:
    /// Encodes `text`, up to its first null character, as UTF-8.
    ///
    /// A surrogate is encoded as three bytes. Returns an empty string if a character before the
    /// first null character is negative or above U+10FFFF.
    static TString<char> ToUTF8(const TString<wchar_t>& text);

    /// Decodes `text`, up to its first null byte, from UTF-8.
    ///
    /// Returns an empty string if these bytes are not valid UTF-8. Overlong forms, surrogates and
    /// values above U+10FFFF are not valid.
    static TString<wchar_t> ToUNICODE(const TString<char>& text);

    /// Whether ToUTF8() returns more bytes than `text` has characters. If `text` is valid and has
    /// no null characters, this means that it contains a character above U+007F.
    static bool HasToBeUTF8(const TString<wchar_t>& text);
};

} // namespace Toolkit
