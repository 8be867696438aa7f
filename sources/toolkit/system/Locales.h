#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// The user's regional settings. Any thread may call the operations; nothing is thrown or logged.
class TOOLKIT_API Locales {
public:
    /// Sets `result` to "." and returns false, whatever the locale: false tells that the separator
    /// is a fixed one.
    static bool GetDecimalSeparator(TString<wchar_t>& result);

    /// Sets `format` to the short date pattern of the user's locale, one blank, and its short time
    /// pattern, in the token syntax of Unicode Technical Standard 35: "M/d/yy h:mm a" for English
    /// in the United States. A pattern that holds anything outside ASCII, or is longer than 255
    /// characters, is left out; the blank stays. True, unless memory runs out: `format` is empty
    /// then.
    ///
    /// On Linux the locale is the one that the first of LC_ALL, LC_TIME and LANG names that is not
    /// empty; patterns come without quoted texts, and date patterns without blanks.
    static bool GetCurrentDateFormat(TString<wchar_t>& format);
};

} // namespace Toolkit
