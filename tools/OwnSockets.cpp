#include "OwnSockets.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace Tool {

std::vector<std::string> FindOwnSockets(const std::string& directory)
{
    namespace fs = std::filesystem;

    std::vector<std::string> paths;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string path = entry->path();
        struct stat status {};
        if (entry->path().extension() != ".ipc" || ::lstat(path.c_str(), &status) != 0)
            continue;
        if (S_ISSOCK(status.st_mode) && status.st_uid == ::geteuid())
            paths.push_back(path);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace Tool
