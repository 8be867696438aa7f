#pragma once

#include "toolkit/core/TString.h"

/// The patterns of dates and times in the user's locale.
namespace Toolkit::LocalePatterns {

/// What the platform tells; empty when it tells nothing.
TString<wchar_t> ShortDate();
TString<wchar_t> ShortTime();

/// Joins the two patterns by a blank. A pattern that holds anything outside ASCII, or does not fit
/// into the 255 characters that are kept for it, is left out.
TString<wchar_t> Compose(const TString<wchar_t>& date, const TString<wchar_t>& time);

} // namespace Toolkit::LocalePatterns
