#pragma once

#include "toolkit/core/TString.h"

/// The platform's standard directories without the framework, in the framework's own texts.
namespace Toolkit::FallbackPaths {

TString<wchar_t> DataDirectory();
TString<wchar_t> ResourcesDirectory();
TString<wchar_t> UserLocalDataDirectory();
TString<wchar_t> DocumentsDirectory();

} // namespace Toolkit::FallbackPaths
