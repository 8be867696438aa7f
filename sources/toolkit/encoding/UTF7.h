#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Converts wide strings to 7-bit ASCII and back. Despite its name, neither writes nor reads UTF-7.
///
/// Any thread may call the operations; nothing is thrown or logged. When out of memory, they return
/// an empty string.
class TOOLKIT_API UTF7 {
public:
    /// Returns each character up to U+007F as the byte with its value, and every other one as an
    /// underscore.
    static TString<char> ToUTF7(const TString<wchar_t>& text);

    /// Returns each byte, up to the first null byte, as the character with its value: 0xE9 gives
    /// U+00E9.
    static TString<wchar_t> ToUNICODE(const TString<char>& text);
};

} // namespace Toolkit
