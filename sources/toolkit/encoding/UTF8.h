#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Wide text to UTF-8 and back. The form is that of RFC 3629.
///
/// Any thread may call the operations; nothing is thrown or logged. When out of memory a text is
/// empty.
class TOOLKIT_API UTF8 {
public:
    /// The UTF-8 form of `text`, up to the first null character.
    ///
    /// A surrogate is written as its three bytes; a text that holds a value above U+10FFFF or a
    /// negative one before its first null character gives the empty text.
    static TString<char> ToUTF8(const TString<wchar_t>& text);

    /// The characters of `text` up to its first null byte.
    ///
    /// A text that is not valid UTF-8 (overlong, a surrogate, cut short, above U+10FFFF) gives the
    /// empty text.
    static TString<wchar_t> ToUNICODE(const TString<char>& text);

    /// Whether the UTF-8 form of `text` is longer than `text`: it holds a character above U+007F.
    static bool HasToBeUTF8(const TString<wchar_t>& text);
};

} // namespace Toolkit
