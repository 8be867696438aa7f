#pragma once

#include <ctime>
#include <string>
#include <sys/types.h>
#include <vector>

namespace Tool {

/// Identifies the log files of one logger and one user: "name.qvlog", and "name-1234560.qvlog" if
/// the logger could not use the first.
struct LogName {
    std::string directory;
    std::string name; ///< Empty if the file does not have the name of a log.
    std::string file; ///< The name of the file at the path; for a logger, "name.qvlog".
    uid_t owner;      ///< Files of other users are ignored: anybody may create one in /tmp.
};

/// A log file, as it was when its directory was listed.
struct LogFileEntry {
    std::string path;
    off_t size;
    timespec written;
    ino_t inode;
};

/// Parses `argument`: a path if it contains "/" or names an existing file, and otherwise the name
/// of a logger of this user.
LogName ParseLogName(const std::string& argument);

/// Returns `argument` itself if it is a path or "-", and otherwise the path of the most recently
/// written file of that logger. Prints this path to standard error unless the file is "name.qvlog".
/// Throws a `Failure` if the logger has no file.
std::string FindLogPath(const std::string& argument);

/// Returns the existing files of a log, the most recently written first.
std::vector<LogFileEntry> FindFilesOfLog(const LogName& name);

/// Returns the log files of this user, the most recently written first.
std::vector<LogFileEntry> FindFilesOfUser();

} // namespace Tool
