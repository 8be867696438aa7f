#pragma once

#include "toolkit/core/TString.h"

/// The standard directories of the platform, for the application name of wxApp.
///
/// Uses wxStandardPaths where it works and can decode the names involved, and builds the same paths
/// itself elsewhere. A HOME that is not valid UTF-8 is not used: the user database names the home
/// directory then.
namespace Toolkit::StandardPaths {

/// The full path of the running executable; empty when unknown.
TString<wchar_t> ExecutablePath();

TString<wchar_t> DataDirectory();
TString<wchar_t> ResourcesDirectory();
TString<wchar_t> UserLocalDataDirectory();
TString<wchar_t> DocumentsDirectory();

} // namespace Toolkit::StandardPaths
