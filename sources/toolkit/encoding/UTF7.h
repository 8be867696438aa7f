#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Wide text to 7-bit ASCII and back. Despite the name it neither writes nor reads UTF-7.
///
/// Any thread may call the operations; nothing is thrown or logged. When out of memory a text is
/// empty.
class TOOLKIT_API UTF7 {
public:
    /// Each character up to U+007F as that byte, every other one as an underscore.
    static TString<char> ToUTF7(const TString<wchar_t>& text);

    /// Each byte, up to the first null byte, as the character of the same value: 0xE9 gives U+00E9.
    static TString<wchar_t> ToUNICODE(const TString<char>& text);
};

} // namespace Toolkit
