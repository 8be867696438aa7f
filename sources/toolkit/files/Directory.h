#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

#include <vector>

namespace Toolkit {

/// Lists a directory; creates and tests directories; removes files.
///
/// Listings return bare names in no particular order. They do not descend, and leave out hidden
/// entries, whose names begin with a dot. A file mask may contain "*" and "?"; the empty one
/// matches everything. A link counts as its target. In a name that is not valid UTF-8 each byte
/// becomes the character of that value: it can be shown, but not opened.
///
/// Failures show in the results alone: nothing is logged, and only a copy throws `std::bad_alloc`.
class TOOLKIT_API Directory {
public:
    /// The directory to list; that of the application for the empty string, which needs a
    /// `PathManager`.
    Directory(const TString<wchar_t>& path);

    /// Replaces `names` by the names of the subdirectories, or of everything else, and returns how
    /// many there are; 0 when the directory cannot be read.
    unsigned int GetDirectories(const TString<wchar_t>& fileSpec,
                                std::vector<TString<wchar_t>>& names) const;
    unsigned int GetFiles(const TString<wchar_t>& fileSpec,
                          std::vector<TString<wchar_t>>& names) const;

    /// The same for all entries of `directory`, files and subdirectories. These names are bare too.
    static unsigned int EnumFilePaths(std::vector<TString<wchar_t>>& names,
                                      const TString<wchar_t>& directory,
                                      const TString<wchar_t>& fileSpec);

    /// Creates the directory `path` and its parents. True when it exists afterwards; false for the
    /// empty string.
    static bool Create(const TString<wchar_t>& path);

    static bool Exist(const TString<wchar_t>& path);

    /// Removes a file or a link; false for a directory, which stays.
    static bool RemoveFile(const TString<wchar_t>& path);

private:
    TString<wchar_t> m_path;
};

} // namespace Toolkit
