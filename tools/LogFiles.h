#pragma once

#include <ctime>
#include <string>
#include <sys/types.h>
#include <vector>

namespace Tool {

/// The log files of one name and one user: "name.qvlog", and "name-1234560.qvlog" when a logger
/// could not use the first.
struct LogName {
    std::string directory;
    std::string name; ///< Empty for a single file with a name of another form.
    std::string file; ///< Its name; with a name of a log, the one without a tick count.
    uid_t owner;      ///< Any user may write a file of such a name, so others' do not count.
};

/// A log file in a directory.
struct LogFileEntry {
    std::string path;
    off_t size;
    timespec written;
    ino_t inode;
};

/// The name that `argument` means: a path, or the name of a logger of this user.
LogName ParseLogName(const std::string& argument);

/// The file that `argument` means: that path, or the most recently written file of that name, which
/// standard error names unless it is "name.qvlog". Throws a `Failure` when there is none.
std::string FindLogPath(const std::string& argument);

/// The existing files of that name, the most recently written first.
std::vector<LogFileEntry> FindFilesOfLog(const LogName& name);

/// The log files of this user, the most recently written first.
std::vector<LogFileEntry> FindFilesOfUser();

} // namespace Tool
