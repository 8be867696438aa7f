#pragma once

#include <toolkit/core/TString.h>
#include <vector>

/// The paths of the files of a folder whose names match a wildcard, in the order of the
/// names; with `isDeep` those of its subfolders too, except links. They are
/// relative to the folder.
std::vector<TString<wchar_t>> FindFiles(const TString<wchar_t>& folder,
                                        const TString<wchar_t>& fileSpec, bool isDeep);
