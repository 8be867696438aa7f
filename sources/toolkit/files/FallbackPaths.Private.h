#pragma once

#include "toolkit/core/TString.h"

/// The standard directories of the platform without wxStandardPaths, as the same texts.
///
/// `name` is what wxStandardPaths appends for the application: its name, after that of its vendor
/// where the application asks for it. It may be empty. `executable` is the path of its executable.
namespace Toolkit::FallbackPaths {

TString<wchar_t> DataDirectory(const TString<wchar_t>& executable, const TString<wchar_t>& name);
TString<wchar_t> ResourcesDirectory(const TString<wchar_t>& executable,
                                    const TString<wchar_t>& name);
TString<wchar_t> UserLocalDataDirectory(const TString<wchar_t>& name);
TString<wchar_t> DocumentsDirectory();

} // namespace Toolkit::FallbackPaths
