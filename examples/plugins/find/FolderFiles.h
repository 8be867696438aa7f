#pragma once

#include <toolkit/core/TString.h>
#include <vector>

/// Returns the sorted paths, relative to `folder`, of the regular files whose names match the
/// wildcard `fileSpec`; an empty one matches all. With `isRecursive`, includes the files in
/// subfolders, except in those that are links.
std::vector<TString<wchar_t>> FindFiles(const TString<wchar_t>& folder,
                                        const TString<wchar_t>& fileSpec, bool isRecursive);
