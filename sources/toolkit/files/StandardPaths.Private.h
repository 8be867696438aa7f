#pragma once

#include "toolkit/core/TString.h"

namespace Toolkit {

// The standard directories of the platform, for the application name of wxApp.
//
// Uses wxStandardPaths where it works and can decode the names involved, and builds the same paths
// itself elsewhere. A HOME that is not valid UTF-8 is not used: the user database names the home
// directory then.

/// The full path of the running executable; empty when unknown.
TString<wchar_t> FindExecutablePath();

/// What the directories append for the program `executable` when wxApp has no name for it: ".tool"
/// for a hidden program, whose application name is empty.
TString<wchar_t> DeriveApplicationName(const TString<wchar_t>& executable);

TString<wchar_t> FindDataDirectory();
TString<wchar_t> FindResourcesDirectory();
TString<wchar_t> FindUserLocalDataDirectory();
TString<wchar_t> FindDocumentsDirectory();

} // namespace Toolkit
