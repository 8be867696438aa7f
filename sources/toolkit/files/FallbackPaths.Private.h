#pragma once

#include "toolkit/core/TString.h"

namespace Toolkit {

// The standard directories of the platform: the same paths as those of wxStandardPaths, but
// composed without it.
//
// `name` is what wxStandardPaths appends for the application: the application's name, preceded by
// the vendor's name if the application has enabled that. It may be empty. `executable` is the path
// of the application's executable.

TString<wchar_t> FindFallbackDataDirectory(const TString<wchar_t>& executable,
                                           const TString<wchar_t>& name);
TString<wchar_t> FindFallbackResourcesDirectory(const TString<wchar_t>& executable,
                                                const TString<wchar_t>& name);
TString<wchar_t> FindFallbackUserLocalDataDirectory(const TString<wchar_t>& name);
TString<wchar_t> FindFallbackDocumentsDirectory();

} // namespace Toolkit
