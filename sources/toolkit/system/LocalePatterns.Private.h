#pragma once

#include "toolkit/core/TString.h"

namespace Toolkit {

// The patterns of dates and times in the user's locale.

/// The name of the library that provides the patterns, with its version if it has one.
extern const wchar_t* const c_localeProvider;

/// Return the pattern that the platform reports; empty when it reports none.
TString<wchar_t> ReadShortDatePattern();
TString<wchar_t> ReadShortTimePattern();

/// Joins the two patterns with a space. A pattern that contains anything outside ASCII, or is
/// longer than 255 characters, is left out.
TString<wchar_t> JoinPatterns(const TString<wchar_t>& date, const TString<wchar_t>& time);

} // namespace Toolkit
