#pragma once

#include "toolkit/core/TString.h"

/// The standard directories of the platform, for the application name of wxApp.
///
/// wxStandardPaths answers wherever it runs and can read the names that its answer depends on.
/// Elsewhere the same texts are made here. A HOME that is not valid UTF-8 is not used: the user
/// database names the home directory then.
namespace Toolkit::StandardPaths {

/// The full path of the running executable; empty when it cannot be found out.
TString<wchar_t> ExecutablePath();

TString<wchar_t> DataDirectory();
TString<wchar_t> ResourcesDirectory();
TString<wchar_t> UserLocalDataDirectory();
TString<wchar_t> DocumentsDirectory();

} // namespace Toolkit::StandardPaths
