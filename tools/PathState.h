#pragma once

#include <string>

namespace Tool {

/// What a program does with a path.
enum class PathUse {
    Read,           ///< A directory from which it reads.
    WriteDirectory, ///< A directory of this user's, in which it writes.
    ShareDirectory, ///< A directory in which every user writes.
    WriteFile,      ///< A file of this user's, which it writes.
};

struct PathState {
    bool isGood;
    std::string text; ///< Such as "missing" or "not writable".
};

/// What is wrong with the path. A missing path is good if it can be created.
PathState ExaminePath(const std::string& path, PathUse use);

} // namespace Tool
