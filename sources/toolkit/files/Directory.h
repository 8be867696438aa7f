#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

#include <vector>

namespace Toolkit {

/// Lists a directory; creates and tests directories; removes files.
///
/// Listings return names without their path, in no particular order. They do not descend into
/// subdirectories, and leave out hidden entries, whose names begin with a dot. `fileSpec` may
/// contain "*" and "?"; an empty one matches every name. A symbolic link counts as its target. In a
/// name that is not valid UTF-8, each byte becomes the character with its value: the name can be
/// shown, but not opened.
///
/// Only the results report failures: nothing is logged, and only copying a `Directory` throws
/// `std::bad_alloc`.
class TOOLKIT_API Directory {
public:
    /// Stores the path of the directory to list. An empty `path` means the application's directory,
    /// as the process-wide `PathManager` reports it, or no directory if there is no `PathManager`.
    /// When out of memory, nothing is listed.
    Directory(const TString<wchar_t>& path);

    /// GetDirectories() lists the subdirectories and GetFiles() everything else. Both replace
    /// `names` and return the number of names; 0 if the directory cannot be read, and when out of
    /// memory.
    unsigned int GetDirectories(const TString<wchar_t>& fileSpec,
                                std::vector<TString<wchar_t>>& names) const;
    unsigned int GetFiles(const TString<wchar_t>& fileSpec,
                          std::vector<TString<wchar_t>>& names) const;

    /// Lists all entries of `directory`, files and subdirectories, in the same way; nothing if
    /// `directory` is an empty string. Despite its name, returns names without their path.
    static unsigned int EnumFilePaths(std::vector<TString<wchar_t>>& names,
                                      const TString<wchar_t>& directory,
                                      const TString<wchar_t>& fileSpec);

    /// Creates the directory `path` and its parents. True if it exists afterwards; false for the
    /// empty string.
    static bool Create(const TString<wchar_t>& path);

    /// Whether a directory `path` exists.
    static bool Exist(const TString<wchar_t>& path);

    /// Removes a file; for a symbolic link, removes the link and keeps its target. Returns false if
    /// `path` cannot be removed, and for a directory, which is not removed even if it is empty.
    static bool RemoveFile(const TString<wchar_t>& path);

private:
    TString<wchar_t> m_path;
};

} // namespace Toolkit
