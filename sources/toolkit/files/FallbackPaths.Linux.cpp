#include "toolkit/base/UserAccount.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/files/FFile.h"
#include "toolkit/files/FallbackPaths.Private.h"
#include "toolkit/files/TextFile.h"

#include <cstddef>
#include <cstdlib>
#include <cwctype>
#include <filesystem>
#include <string>
#include <system_error>

namespace Toolkit {
namespace {

// Returns where the program is installed: the part of its path before the last "bin" directory, or
// /usr/local if there is no such part.
TString<wchar_t> FindInstallPrefix(const TString<wchar_t>& executable)
{
    const std::size_t bin = executable.rfind(L"/bin/");
    return bin == std::wstring::npos || bin == 0 ? TString<wchar_t>(L"/usr/local")
                                                 : TString<wchar_t>(executable.substr(0, bin));
}

// Returns the value of the environment variable WX_<NAME>_DATA_DIR, which names the data directory
// of a program that is not installed.
TString<wchar_t> ReadDataDirectoryVariable(std::wstring name)
{
    for (wchar_t& character : name)
        character = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(character)));
    const std::string variable = Base::EncodeUtf8(L"WX_" + name + L"_DATA_DIR");
    return Base::DecodeUtf8(std::getenv(variable.c_str()));
}

// Returns the path of the file that names the user's own directories (XDG user-dirs).
TString<wchar_t> FindUserDirectoriesFile()
{
    TString<wchar_t> directory = Base::DecodeUtf8(std::getenv("XDG_CONFIG_HOME"));
    if (directory.empty())
        directory = Base::GetHomeDirectory() + L"/.config";
    return directory + L"/user-dirs.dirs";
}

constexpr wchar_t c_documentsKey[] = L"XDG_DOCUMENTS_DIR";

bool NamesDocuments(const TString<wchar_t>& line)
{
    return line.find(c_documentsKey) != std::wstring::npos;
}

// Returns the directory in a line such as XDG_DOCUMENTS_DIR="$HOME/Documents".
TString<wchar_t> ParseDirectory(const TString<wchar_t>& line)
{
    const std::size_t equals = line.find(L'=');
    TString<wchar_t> value = equals == std::wstring::npos ? L"" : line.substr(equals + 1);
    const std::wstring variable = L"$HOME";
    const std::wstring home = Base::GetHomeDirectory();
    for (std::size_t at = 0; (at = value.find(variable, at)) != std::wstring::npos;) {
        value.replace(at, variable.size(), home);
        at += home.size();
    }
    value.Trim();
    value.Replace(L"\"", TString<wchar_t>::Empty());
    return value;
}

// Returns the documents directory that the first matching line of the file `path` names. Empty if
// there is no such line, or no such directory.
TString<wchar_t> ReadDocumentsDirectory(const TString<wchar_t>& path)
{
    TextFile file;
    // Skips pipes and the like: opening them would block.
    if (!FFile::Exists(path) || !file.Open(path))
        return {};
    TString<wchar_t> line = file.GetFirstLine();
    while (!NamesDocuments(line) && !file.Eof())
        line = file.GetNextLine();
    if (!NamesDocuments(line))
        return {};
    TString<wchar_t> directory = ParseDirectory(line);
    std::error_code ignored;
    return std::filesystem::is_directory(Base::EncodeUtf8(directory), ignored) ? directory
                                                                               : TString<wchar_t>();
}

} // namespace

TString<wchar_t> FindFallbackDataDirectory(const TString<wchar_t>& executable,
                                           const TString<wchar_t>& name)
{
    TString<wchar_t> chosen = ReadDataDirectoryVariable(name);
    if (!chosen.empty())
        return chosen;
    const TString<wchar_t> share = FindInstallPrefix(executable) + L"/share";
    return name.empty() ? share : TString<wchar_t>(share + L"/" + name);
}

TString<wchar_t> FindFallbackResourcesDirectory(const TString<wchar_t>& executable,
                                                const TString<wchar_t>& name)
{
    return FindFallbackDataDirectory(executable, name);
}

TString<wchar_t> FindFallbackUserLocalDataDirectory(const TString<wchar_t>& name)
{
    return Base::GetHomeDirectory() + L"/." + name;
}

TString<wchar_t> FindFallbackDocumentsDirectory()
{
    const TString<wchar_t> directory = ReadDocumentsDirectory(FindUserDirectoriesFile());
    return directory.empty() ? TString<wchar_t>(Base::GetHomeDirectory()) : directory;
}

} // namespace Toolkit
