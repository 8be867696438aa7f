#pragma once

#include "toolkit/core/TString.h"

namespace Toolkit {

// The standard directories of the platform, for the application name of wxApp.
//
// Uses wxStandardPaths where it works and can decode the names involved; otherwise builds the same
// paths itself. If HOME is not valid UTF-8, the home directory comes from the user database
// instead.

/// Returns the full path of the running executable; empty if unknown.
TString<wchar_t> FindExecutablePath();

/// Returns the name to append to the directories for the program `executable` if wxApp has no
/// application name: its file name without the extension. For a hidden program it is the whole
/// name, such as ".tool", although `PathManager` reports an empty application name.
TString<wchar_t> DeriveApplicationName(const TString<wchar_t>& executable);

TString<wchar_t> FindDataDirectory();
TString<wchar_t> FindResourcesDirectory();
TString<wchar_t> FindUserLocalDataDirectory();
TString<wchar_t> FindDocumentsDirectory();

} // namespace Toolkit
