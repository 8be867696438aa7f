#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace Tool {

/// The log files of one name: "name.qvlog", and "name-1234.qvlog" when a logger could not use the
/// first.
struct LogName {
    std::string directory;
    std::string name; ///< Empty for a single file with a name of another form.
    std::string file; ///< That file's name.
};

/// A log file in a directory.
struct LogFileEntry {
    std::string path;
    off_t size;
    long long written; ///< Seconds since 1970.
    ino_t inode;
};

/// The name that `argument` means: a path, or the name of a logger of this user.
LogName ParseLogName(const std::string& argument);

/// The file that `argument` means: that path, or the most recently written file of that name.
/// Throws a `Failure` when there is none.
std::string FindLogPath(const std::string& argument);

/// The existing files of that name, the most recently written first.
std::vector<LogFileEntry> FindFilesOfLog(const LogName& name);

/// The log files of this user, the most recently written first.
std::vector<LogFileEntry> FindFilesOfUser();

} // namespace Tool
