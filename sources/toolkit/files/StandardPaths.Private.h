#pragma once

#include "toolkit/core/TString.h"

/// The platform's standard directories. The framework is asked where it runs and can read the names
/// involved; elsewhere the same texts are made here.
namespace Toolkit::StandardPaths {

/// The full path of the running executable; empty when it cannot be found out.
TString<wchar_t> ExecutablePath();

TString<wchar_t> DataDirectory();
TString<wchar_t> ResourcesDirectory();
TString<wchar_t> UserLocalDataDirectory();
TString<wchar_t> DocumentsDirectory();

} // namespace Toolkit::StandardPaths
