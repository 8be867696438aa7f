#include "PathState.h"

#include <sys/stat.h>
#include <unistd.h>

namespace Tool {
namespace {

// Returns the nearest existing ancestor of `path`; it may be a file. "/" if there is no other.
std::string FindExistingParent(std::string path)
{
    struct stat status {};
    do {
        const std::size_t separator = path.rfind('/');
        path.erase(separator == std::string::npos ? 0 : separator);
    } while (!path.empty() && ::stat(path.c_str(), &status) != 0);
    return path.empty() ? "/" : path;
}

// Whether the file can be written to, or files can be created in the directory.
bool IsWritable(const std::string& path, const struct stat& status)
{
    return ::access(path.c_str(), S_ISDIR(status.st_mode) ? W_OK | X_OK : W_OK) == 0;
}

bool CanCreateIn(const std::string& directory)
{
    struct stat status {};
    return ::stat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           IsWritable(directory, status);
}

PathState ExamineMissing(const std::string& path, PathUse use)
{
    if (use == PathUse::Read || CanCreateIn(FindExistingParent(path)))
        return {true, "missing"};
    return {false, "missing, and cannot be created"};
}

PathState ExamineWritable(const std::string& path, const struct stat& status)
{
    return IsWritable(path, status) ? PathState{true, "good"} : PathState{false, "not writable"};
}

PathState ExamineOwn(const std::string& path, const struct stat& status)
{
    if (status.st_uid != ::geteuid())
        return {false, "owned by another user"};
    return ExamineWritable(path, status);
}

} // namespace

PathState ExaminePath(const std::string& path, PathUse use)
{
    struct stat status {};
    const bool isFile = use == PathUse::WriteFile;
    // The library refuses to write to a file through a link.
    if ((isFile ? ::lstat(path.c_str(), &status) : ::stat(path.c_str(), &status)) != 0)
        return ExamineMissing(path, use);
    if (S_ISLNK(status.st_mode))
        return {false, "a link"};
    if (S_ISDIR(status.st_mode) == isFile)
        return {false, isFile ? "a directory" : "not a directory"};
    switch (use) {
    case PathUse::Read:
        return ::access(path.c_str(), R_OK | X_OK) == 0 ? PathState{true, "good"}
                                                        : PathState{false, "not readable"};
    case PathUse::ShareDirectory:
        return ExamineWritable(path, status);
    default:
        return ExamineOwn(path, status);
    }
}

} // namespace Tool
