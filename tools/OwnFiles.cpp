#include "OwnFiles.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace Tool {

std::vector<std::string> FindOwnFiles(const std::string& directory, std::string_view extension,
                                      FileKind kind)
{
    namespace fs = std::filesystem;

    std::vector<std::string> paths;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string path = entry->path();
        struct stat status {};
        if (entry->path().extension() != extension || ::lstat(path.c_str(), &status) != 0)
            continue;
        const bool hasKind =
            kind == FileKind::Socket ? S_ISSOCK(status.st_mode) : S_ISREG(status.st_mode);
        if (hasKind && status.st_uid == ::geteuid())
            paths.push_back(path);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace Tool
