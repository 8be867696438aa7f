#pragma once

#include "toolkit/core/TString.h"

namespace Toolkit {

// The patterns of dates and times in the user's locale.

/// The name of the library that provides the patterns, with its version if it has one.
extern const wchar_t* const c_localeProvider;

/// Return the pattern that the platform reports, on Linux simplified as
/// Locales::GetCurrentDateFormat() describes. Empty if the platform reports none.
TString<wchar_t> ReadShortDatePattern();
TString<wchar_t> ReadShortTimePattern();

/// Joins the two patterns with a space. Leaves out a pattern that contains anything outside ASCII,
/// or is longer than 255 characters.
TString<wchar_t> JoinPatterns(const TString<wchar_t>& date, const TString<wchar_t>& time);

} // namespace Toolkit
