#pragma once

#include <string>

namespace Tool {

/// How a program uses a path.
enum class PathUse {
    Read,           ///< A directory that the program reads.
    WriteDirectory, ///< A directory that belongs to this user and that the program writes to.
    ShareDirectory, ///< A directory that all users write to.
    WriteFile,      ///< A file that belongs to this user and that the program writes to.
};

struct PathState {
    bool isGood;
    std::string text; ///< Such as "missing" or "not writable".
};

/// Checks whether a program can use `path`. A missing path is good if the program only reads it or
/// can create it.
PathState ExaminePath(const std::string& path, PathUse use);

} // namespace Tool
