#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// The user's regional settings. Any thread may call the operations; nothing is thrown or logged.
class TOOLKIT_API Locales {
public:
    /// Sets `result` to "." and returns false in every locale: the separator is a fixed fallback.
    static bool GetDecimalSeparator(TString<wchar_t>& result);

    /// Sets `format` to the short date pattern of the user's locale, one space, and its short time
    /// pattern, in the token syntax of Unicode Technical Standard 35: "M/d/yy h:mm a" for US
    /// English. A pattern that contains anything outside ASCII, or is longer than 255 characters,
    /// is left out; the space stays. Returns true; when out of memory, returns false and `format`
    /// is empty.
    ///
    /// On Linux the first of LC_ALL, LC_TIME and LANG that is not empty names the locale. Removes
    /// quoted text, eras, and spaces inside the date pattern; replaces a lone H with HH, a lone y
    /// with yyyy, and a period of the day (B) with AM/PM (a).
    static bool GetCurrentDateFormat(TString<wchar_t>& format);

    /// Returns where the patterns come from: "ICU 72.1", or "Core Foundation" on macOS. Empty when
    /// out of memory.
    static TString<wchar_t> GetProviderVersion();
};

} // namespace Toolkit
