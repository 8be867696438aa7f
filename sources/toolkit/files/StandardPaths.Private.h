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

/// What the directories append for the program `executable` when wxApp has no name for it: ".tool"
/// for a hidden program, whose application name is empty.
TString<wchar_t> NameOf(const TString<wchar_t>& executable);

TString<wchar_t> DataDirectory();
TString<wchar_t> ResourcesDirectory();
TString<wchar_t> UserLocalDataDirectory();
TString<wchar_t> DocumentsDirectory();

} // namespace Toolkit::StandardPaths
