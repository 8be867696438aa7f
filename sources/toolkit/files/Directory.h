#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

#include <vector>

namespace Toolkit {

/// Lists a directory, and creates, tests and removes what stands in the file system.
///
/// Listings give bare names in no particular order, without what lies deeper and without hidden
/// entries, whose names begin with a point. A file specification may hold "*" and "?"; the empty
/// one matches everything. A link counts as what it leads to. Names that are not valid UTF-8 come
/// with each byte as the character of its value: they are shown, but cannot be opened by that text.
///
/// Failures show in the results alone: nothing is thrown or logged.
class TOOLKIT_API Directory {
public:
    /// The directory to list; for the empty text that of the application, and then there has to be
    /// a `PathManager`.
    Directory(const TString<wchar_t>& path);

    /// Each replaces `names` by those of the subdirectories, or of everything that is none, and
    /// returns how many there are: 0 also when the directory cannot be read.
    unsigned int GetDirectories(const TString<wchar_t>& fileSpec,
                                std::vector<TString<wchar_t>>& names) const;
    unsigned int GetFiles(const TString<wchar_t>& fileSpec,
                          std::vector<TString<wchar_t>>& names) const;

    /// The same for files and subdirectories of `directory`; the names are bare here too.
    static unsigned int EnumFilePaths(std::vector<TString<wchar_t>>& names,
                                      const TString<wchar_t>& directory,
                                      const TString<wchar_t>& fileSpec);

    /// Creates the directory `path` and its parents. True when it is there afterwards; false for
    /// the empty text.
    static bool Create(const TString<wchar_t>& path);

    static bool Exist(const TString<wchar_t>& path);

    /// Removes a file, or a link; false for a directory, which stays.
    static bool RemoveFile(const TString<wchar_t>& path);

private:
    TString<wchar_t> m_path;
};

} // namespace Toolkit
