#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// The user's regional settings. Any thread may call the operations; nothing is thrown or logged.
class TOOLKIT_API Locales {
public:
    /// Sets `result` to "." and returns false in every locale: the dot is a fixed fallback.
    static bool GetDecimalSeparator(TString<wchar_t>& result);

    /// Sets `format` to the short date pattern of the user's locale, one space, and its short time
    /// pattern, in the token syntax of Unicode Technical Standard 35: "M/d/yy h:mm a" for US
    /// English. A pattern that contains anything outside ASCII, or is longer than 255 characters,
    /// is left out; the space stays. Returns true; when out of memory, returns false and `format`
    /// is empty.
    ///
    /// On Linux, the first of LC_ALL, LC_TIME and LANG that is not empty names the locale. The
    /// patterns are those of ICU without quoted text, eras, and spaces inside the date pattern; a
    /// lone H becomes HH, a lone y becomes yyyy, and a period of the day (B) becomes AM/PM (a).
    /// Without ICU, they are those of US English.
    static bool GetCurrentDateFormat(TString<wchar_t>& format);

    /// Returns the name of the library that provides the patterns, with the version that this
    /// library was built for: "ICU 72.1", or "Core Foundation" on macOS. Empty when out of memory.
    static TString<wchar_t> GetProviderVersion();
};

} // namespace Toolkit
