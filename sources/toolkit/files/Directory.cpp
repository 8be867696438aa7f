#include "toolkit/files/Directory.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/framework/Text.h"

#include <wx/filefn.h>

#include <dirent.h>
#include <filesystem>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace Toolkit {
namespace {

enum class Wanted { Directories, Files, Both };

struct DirectoryCloser {
    void operator()(DIR* directory) const { ::closedir(directory); }
};
using OpenDirectory = std::unique_ptr<DIR, DirectoryCloser>;

bool IsHidden(const dirent& entry)
{
    return entry.d_name[0] == '.';
}

bool IsDirectory(const OpenDirectory& directory, const dirent& entry)
{
    // Most file systems report the type of an entry with its name, but not the type of a link's
    // target.
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status {};
    return ::fstatat(::dirfd(directory.get()), entry.d_name, &status, 0) == 0 &&
           S_ISDIR(status.st_mode);
}

TString<wchar_t> GetName(const dirent& entry)
{
    TString<wchar_t> name;
    const std::string_view bytes = entry.d_name;
    if (Base::AppendDecodedUtf8(name, bytes.data(), bytes.size()))
        return name;
    for (const char byte : bytes)
        name.push_back(static_cast<unsigned char>(byte));
    return name;
}

bool Matches(const TString<wchar_t>& name, const TString<wchar_t>& fileSpec)
{
    return fileSpec.empty() ||
           wxMatchWild(Framework::ToWxString(fileSpec), Framework::ToWxString(name));
}

void Read(const TString<wchar_t>& path, const TString<wchar_t>& fileSpec, Wanted wanted,
          std::vector<TString<wchar_t>>& names)
{
    const OpenDirectory directory(::opendir(Base::EncodeUtf8(path).c_str()));
    if (!directory)
        return;
    while (const dirent* const entry = ::readdir(directory.get())) {
        if (IsHidden(*entry))
            continue;
        if (wanted != Wanted::Both &&
            IsDirectory(directory, *entry) != (wanted == Wanted::Directories))
            continue;
        TString<wchar_t> name = GetName(*entry);
        if (Matches(name, fileSpec))
            names.push_back(std::move(name));
    }
}

unsigned int List(const TString<wchar_t>& path, const TString<wchar_t>& fileSpec, Wanted wanted,
                  std::vector<TString<wchar_t>>& names)
{
    // The other arguments may be elements of `names`, so its old strings are kept until the end.
    std::vector<TString<wchar_t>> previous;
    previous.swap(names);
    // All names or none.
    if (!Base::RunsWithoutThrowing([&] { Read(path, fileSpec, wanted, names); }))
        names.clear();
    return static_cast<unsigned int>(names.size());
}

TString<wchar_t> FindApplicationPath()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    return paths.IsValid() ? paths->GetApplicationPath() : TString<wchar_t>();
}

} // namespace

Directory::Directory(const TString<wchar_t>& path)
    : m_path(Base::TryOr({}, [&] { return path.empty() ? FindApplicationPath() : path; }))
{
}

unsigned int Directory::GetDirectories(const TString<wchar_t>& fileSpec,
                                       std::vector<TString<wchar_t>>& names) const
{
    return List(m_path, fileSpec, Wanted::Directories, names);
}

unsigned int Directory::GetFiles(const TString<wchar_t>& fileSpec,
                                 std::vector<TString<wchar_t>>& names) const
{
    return List(m_path, fileSpec, Wanted::Files, names);
}

unsigned int Directory::EnumFilePaths(std::vector<TString<wchar_t>>& names,
                                      const TString<wchar_t>& directory,
                                      const TString<wchar_t>& fileSpec)
{
    return List(directory, fileSpec, Wanted::Both, names);
}

bool Directory::Create(const TString<wchar_t>& path)
{
    return !path.empty() && Base::TryOr(false, [&] {
        std::error_code ignored;
        std::filesystem::create_directories(Base::EncodeUtf8(path), ignored);
        return Exist(path);
    });
}

bool Directory::Exist(const TString<wchar_t>& path)
{
    return PathManager::DirExists(path);
}

bool Directory::RemoveFile(const TString<wchar_t>& path)
{
    // remove() would also delete an empty directory.
    return Base::TryOr(false, [&] { return ::unlink(Base::EncodeUtf8(path).c_str()) == 0; });
}

} // namespace Toolkit
