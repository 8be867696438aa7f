#include "toolkit/files/PathManager.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Singleton.h"
#include "toolkit/base/UserAccount.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/files/FFile.h"
#include "toolkit/files/FallbackPaths.Private.h"
#include "toolkit/files/StandardPaths.Private.h"
#include "toolkit/framework/Text.h"

#include <wx/filename.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>

namespace Toolkit {
namespace {

// Reports no failure, not even out of memory.
void CreateDirectories(const TString<wchar_t>& path)
{
    std::error_code ignored;
    static_cast<void>(Base::RunsWithoutThrowing(
        [&] { std::filesystem::create_directories(Base::EncodeUtf8(path), ignored); }));
}

TString<wchar_t> JoinPath(const TString<wchar_t>& base, const TString<wchar_t>& part)
{
    const wchar_t separator = wxFileName::GetPathSeparator();
    std::wstring path = base;
    if (!path.empty() && path.back() != separator)
        path.push_back(separator);
    return path.append(part);
}

struct PathParts {
    TString<wchar_t> volume;
    TString<wchar_t> path;
    TString<wchar_t> name;
    TString<wchar_t> extension;
};

PathParts Split(const TString<wchar_t>& fullPath)
{
    wxString volume;
    wxString path;
    wxString name;
    wxString extension;
    wxFileName::SplitPath(Framework::ToWxString(fullPath), &volume, &path, &name, &extension);
    return {Framework::ToText(volume), Framework::ToText(path), Framework::ToText(name),
            Framework::ToText(extension)};
}

TString<wchar_t> GetNativeSeparator()
{
    return static_cast<wchar_t>(wxFileName::GetPathSeparator());
}

TString<wchar_t> GetWorkingDirectory()
{
    std::error_code error;
    const std::filesystem::path directory = std::filesystem::current_path(error);
    return Base::DecodeUtf8(directory.native());
}

} // namespace

smart_ptr<PathManager>* PathManager::s_pInstance = nullptr;

PathManager::PathManager() : m_pathSeparator(GetNativeSeparator())
{
    LocateApplication(FindExecutablePath());
    m_documentsPath = FindDocumentsDirectory();
    m_configurationPath = Join(FindDataDirectory(), c_strConfigurationFolderName);
    const TString<wchar_t> resources = FindResourcesDirectory();
    m_ressourcesPath = Join(resources, c_strRessourcesFolderName);
    m_applicationDataPath = Join(FindUserLocalDataDirectory(), m_applicationName);
    m_appearancesPath = Join(resources, c_strAppearancesFolderName);
    RebuildDependentPathes();
    CreateDirectories(m_applicationDataPath);
    m_applicationUniqueName = MakeUniqueName();
}

PathManager::PathManager(const TString<wchar_t>& executable) : m_pathSeparator(GetNativeSeparator())
{
    LocateApplication(executable);
    const TString<wchar_t> name = DeriveApplicationName(executable);
    m_documentsPath = FindDocumentsDirectory();
    m_configurationPath =
        Join(FindFallbackDataDirectory(executable, name), c_strConfigurationFolderName);
    const TString<wchar_t> resources = FindFallbackResourcesDirectory(executable, name);
    m_ressourcesPath = Join(resources, c_strRessourcesFolderName);
    m_applicationDataPath = Join(FindFallbackUserLocalDataDirectory(name), m_applicationName);
    m_appearancesPath = Join(resources, c_strAppearancesFolderName);
    RebuildDependentPathes();
    m_applicationUniqueName = MakeUniqueName();
}

PathManager::~PathManager() = default;

void PathManager::LocateApplication(const TString<wchar_t>& executable)
{
    const std::size_t separator = executable.rfind(m_pathSeparator);
    if (separator == std::wstring::npos) {
        m_applicationPath = GetWorkingDirectory();
        return;
    }
    m_applicationPath = executable.substr(0, separator);
    m_applicationName = executable.substr(separator + 1);
    const std::size_t dot = m_applicationName.rfind(L'.');
    if (dot != std::wstring::npos)
        m_applicationName.erase(dot);
}

// Plain concatenation: a directory that ends in a separator gets a second one.
TString<wchar_t> PathManager::Join(const TString<wchar_t>& directory,
                                   const TString<wchar_t>& name) const
{
    return directory + m_pathSeparator + name;
}

TString<wchar_t> PathManager::MakeUniqueName() const
{
    TString<wchar_t> name = m_applicationPath;
    name.Replace(m_pathSeparator, TString<wchar_t>::Empty());
    name.Replace(L":", TString<wchar_t>::Empty());
    name += m_applicationName + Base::GetLoginName();
    return name.ToLower();
}

TString<wchar_t> PathManager::GetDataDir() const
{
    return Base::TryOr({}, FindDataDirectory);
}

TString<wchar_t> PathManager::GetUserLocalDataDir() const
{
    return Base::TryOr({}, FindUserLocalDataDirectory);
}

TString<wchar_t> PathManager::GetTempDir() const
{
    return Base::TryOr({}, [] { return TString<wchar_t>(L"/tmp"); });
}

void PathManager::SetApplicationRessourcesPath(const TString<wchar_t>& path)
{
    // Join() and the assignment may run out of memory before anything has changed; swap() cannot
    // fail.
    TString<wchar_t> plugins = Join(path, c_strPluginsFolderName);
    m_ressourcesPath = path;
    m_pluginsPath.swap(plugins);
}

void PathManager::SetApplicationDataPath(const TString<wchar_t>& path)
{
    m_applicationDataPath = path;
    CreateDirectories(path);
}

void PathManager::SetMassStorageDataPath(const TString<wchar_t>& path)
{
    m_massStorageDataPath = path;
}

void PathManager::RebuildDependentPathes()
{
    m_pluginsPath = Join(m_ressourcesPath, c_strPluginsFolderName);
}

void PathManager::AppendPath(TString<wchar_t>& path, const TString<wchar_t>& part)
{
    AppendPath(path, path, part);
}

void PathManager::AppendPath(TString<wchar_t>& result, const TString<wchar_t>& base,
                             const TString<wchar_t>& part)
{
    result = Base::TryOr({}, [&] { return JoinPath(base, part); });
}

void PathManager::SplitPath(const TString<wchar_t>& fullPath, TString<wchar_t>& volume,
                            TString<wchar_t>& path, TString<wchar_t>& name,
                            TString<wchar_t>& extension)
{
    PathParts parts = Base::TryOr({}, [&] { return Split(fullPath); });
    volume.swap(parts.volume);
    path.swap(parts.path);
    name.swap(parts.name);
    extension.swap(parts.extension);
}

bool PathManager::Exists(const TString<wchar_t>& path)
{
    return DirExists(path) || FileExists(path);
}

bool PathManager::FileExists(const TString<wchar_t>& path)
{
    return FFile::Exists(path);
}

bool PathManager::DirExists(const TString<wchar_t>& path)
{
    std::error_code ignored;
    return Base::TryOr(
        false, [&] { return std::filesystem::is_directory(Base::EncodeUtf8(path), ignored); });
}

void PathManager::CreateInstance()
{
    Base::CreateSingleton(s_pInstance, [] { return new PathManager(); });
}

smart_ptr<PathManager> PathManager::GetInstance()
{
    return Base::GetSingleton(s_pInstance);
}

void PathManager::ReleaseInstance()
{
    Base::ReleaseSingleton(s_pInstance);
}

} // namespace Toolkit
