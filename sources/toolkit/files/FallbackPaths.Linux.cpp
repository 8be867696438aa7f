#include "toolkit/base/ExecutablePath.h"
#include "toolkit/base/UserAccount.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/files/FallbackPaths.Private.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/files/TextFile.h"

#include <cstdlib>

namespace Toolkit::FallbackPaths {
namespace {

// The file name of the executable without its last extension.
TString<wchar_t> ApplicationName()
{
    TString<wchar_t> volume;
    TString<wchar_t> path;
    TString<wchar_t> name;
    TString<wchar_t> extension;
    PathManager::SplitPath(Base::GetExecutablePath(), volume, path, name, extension);
    return name;
}

// Where the program is installed: what stands above the last "bin" directory of its path.
TString<wchar_t> InstallPrefix()
{
    const TString<wchar_t> path = Base::GetExecutablePath();
    const std::size_t bin = path.rfind(L"/bin/");
    return bin == std::wstring::npos || bin == 0 ? TString<wchar_t>(L"/usr/local")
                                                 : TString<wchar_t>(path.substr(0, bin));
}

// The file with the user's own directories (XDG user-dirs).
TString<wchar_t> UserDirectoriesFile()
{
    TString<wchar_t> directory = Base::DecodeUtf8(std::getenv("XDG_CONFIG_HOME"));
    if (directory.empty())
        directory = Base::GetHomeDirectory() + L"/.config";
    return directory + L"/user-dirs.dirs";
}

// The directory that a line such as XDG_DOCUMENTS_DIR="$HOME/Documents" names; empty for any other
// line and for a directory that does not exist.
TString<wchar_t> ParseDocumentsLine(const TString<wchar_t>& line)
{
    const std::wstring name = L"XDG_DOCUMENTS_DIR=";
    if (line.compare(0, name.size(), name) != 0)
        return {};
    TString<wchar_t> value = line.substr(name.size());
    value.Trim();
    value.Replace(L"\"", TString<wchar_t>::Empty());
    const std::wstring home = L"$HOME";
    if (value.compare(0, home.size(), home) == 0)
        value.replace(0, home.size(), Base::GetHomeDirectory());
    return PathManager::DirExists(value) ? value : TString<wchar_t>();
}

} // namespace

TString<wchar_t> DataDirectory()
{
    return InstallPrefix() + L"/share/" + ApplicationName();
}

TString<wchar_t> ResourcesDirectory()
{
    return DataDirectory();
}

TString<wchar_t> UserLocalDataDirectory()
{
    return Base::GetHomeDirectory() + L"/." + ApplicationName();
}

TString<wchar_t> DocumentsDirectory()
{
    TextFile file;
    file.Open(UserDirectoriesFile());
    TString<wchar_t> directory = ParseDocumentsLine(file.GetFirstLine());
    while (directory.empty() && !file.Eof())
        directory = ParseDocumentsLine(file.GetNextLine());
    return directory.empty() ? Base::GetHomeDirectory() : directory;
}

} // namespace Toolkit::FallbackPaths
