#pragma once

#include <toolkit/core/TString.h>
#include <vector>

/// Returns the paths, relative to `folder`, of the files whose names match the wildcard `fileSpec`,
/// sorted. With `isRecursive`, includes subfolders, except those that are links.
std::vector<TString<wchar_t>> FindFiles(const TString<wchar_t>& folder,
                                        const TString<wchar_t>& fileSpec, bool isRecursive);
