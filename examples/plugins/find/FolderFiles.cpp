#include "FolderFiles.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/files/Directory.h>
#include <toolkit/files/PathManager.h>

using namespace Toolkit;

namespace {

using Text = TString<wchar_t>;

Text Join(const Text& folder, const Text& name)
{
    Text path;
    PathManager::AppendPath(path, folder, name);
    return path;
}

// AddFiles() skips links, because a link may point to a folder that contains it.
bool IsLink(const Text& path)
{
    std::error_code ignored;
    return std::filesystem::is_symlink(std::string(UTF8::ToUTF8(path)), ignored);
}

// Adds the files of `subfolder`, a path relative to `root`; empty for `root` itself.
void AddFiles(const Text& root, const Text& subfolder, const Text& fileSpec, bool isRecursive,
              std::vector<Text>& paths)
{
    const Directory directory(subfolder.empty() ? root : Join(root, subfolder));
    std::vector<Text> names;
    directory.GetFiles(fileSpec, names);
    for (const Text& name : names) {
        const Text path = Join(subfolder, name);
        // Reading a pipe or a device could block forever.
        if (PathManager::FileExists(Join(root, path)))
            paths.push_back(path);
    }
    if (!isRecursive)
        return;
    directory.GetDirectories(L"", names);
    for (const Text& name : names) {
        const Text folder = Join(subfolder, name);
        if (!IsLink(Join(root, folder)))
            AddFiles(root, folder, fileSpec, isRecursive, paths);
    }
}

} // namespace

std::vector<Text> FindFiles(const Text& folder, const Text& fileSpec, bool isRecursive)
{
    std::vector<Text> paths;
    AddFiles(folder, L"", fileSpec, isRecursive, paths);
    std::sort(paths.begin(), paths.end());
    return paths;
}
