#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

namespace Toolkit {

/// Where the application lives and where it keeps its data: process-wide, computed once.
///
/// The standard directories are those of `wxStandardPaths`, under the name that `wxApp` has for the
/// application. A `HOME` that is not valid UTF-8 is not used: the user database names the home
/// directory then.
///
/// The setters are not guarded: other threads may read while no setter runs. When out of memory,
/// the constructor and the setters throw `std::bad_alloc` and change nothing; a text that is
/// returned or composed is empty. Nothing else is thrown, and nothing is logged.
class TOOLKIT_API PathManager {
public:
    static const TString<wchar_t> c_strConfigurationFolderName;
    static const TString<wchar_t> c_strRessourcesFolderName;
    /// Appearances live in the ressources folder.
    static const TString<wchar_t> c_strAppearancesFolderName;
    static const TString<wchar_t> c_strPluginsFolderName;
    /// No path is derived from it.
    static const TString<wchar_t> c_strCacheFolderName;

    /// Computes the paths and creates the application data directory with its parents. Does not
    /// report when it cannot be created.
    PathManager();
    /// The paths that the program `executable` would have, started by this user in this
    /// environment and without a name of its own in `wxApp`. Its path is absolute and has no links.
    /// Creates nothing. GetDataDir() and GetUserLocalDataDir() are those of this process.
    explicit PathManager(const TString<wchar_t>& executable);
    ~PathManager();

    /// The file name of the executable without its last extension: "tool" for tool.bin. Empty when
    /// the executable is unknown.
    const TString<wchar_t>& GetApplicationName() const { return m_applicationName; }
    /// The directory of the executable, without a separator at its end.
    const TString<wchar_t>& GetApplicationPath() const { return m_applicationPath; }
    /// "config" in the data directory.
    const TString<wchar_t>& GetConfigurationPath() const { return m_configurationPath; }
    /// The application's own folder among the user's local data.
    const TString<wchar_t>& GetApplicationDataPath() const { return m_applicationDataPath; }
    const TString<wchar_t>& GetApplicationRessourcesPath() const { return m_ressourcesPath; }
    /// The ressources path at the start, whatever is set later.
    const TString<wchar_t>& GetAppearancesPath() const { return m_appearancesPath; }
    /// "plugins" in the ressources path.
    const TString<wchar_t>& GetPluginsPath() const { return m_pluginsPath; }
    const TString<wchar_t>& GetDocumentsPath() const { return m_documentsPath; }
    /// Empty until it is set.
    const TString<wchar_t>& GetMassStorageDataPath() const { return m_massStorageDataPath; }
    /// The separator of path components, one character.
    const TString<wchar_t>& GetPathSeparator() const { return m_pathSeparator; }
    /// A lower-case name that only this application has, installed in this place and run by this
    /// user: /Apps/My Tool/bin/Tool.app run by ann gives "appsmy toolbintoolann".
    const TString<wchar_t>& GetApplicationUniqueName() const { return m_applicationUniqueName; }

    /// The directory of the application's read-only data, queried on each call.
    TString<wchar_t> GetDataDir() const;
    /// The directory of the user's own data on this machine, queried on each call.
    TString<wchar_t> GetUserLocalDataDir() const;
    /// Always "/tmp", whatever the environment says.
    TString<wchar_t> GetTempDir() const;

    /// Sets the ressources path, and the plug-ins path in it.
    void SetApplicationRessourcesPath(const TString<wchar_t>& path);
    /// Sets the path and creates the directory with its parents. Does not report when it cannot be
    /// created.
    void SetApplicationDataPath(const TString<wchar_t>& path);
    void SetMassStorageDataPath(const TString<wchar_t>& path);
    /// Computes what depends on the ressources path again: the plug-ins path.
    void RebuildDependentPathes();

    /// Joins `part` onto `path` with one separator, unless `path` is empty or ends with one: "dir"
    /// and "x" give "dir/x"; "dir/" and "/x" give "dir//x"; "dir" and "" give "dir/".
    static void AppendPath(TString<wchar_t>& path, const TString<wchar_t>& part);
    /// The same for `base` and `part`, into `result`.
    static void AppendPath(TString<wchar_t>& result, const TString<wchar_t>& base,
                           const TString<wchar_t>& part);

    /// Splits by the rules of the system; what is absent becomes empty. The extension has no dot:
    /// "/a/b.tar.gz" gives "", "/a", "b.tar", "gz".
    static void SplitPath(const TString<wchar_t>& fullPath, TString<wchar_t>& volume,
                          TString<wchar_t>& path, TString<wchar_t>& name,
                          TString<wchar_t>& extension);

    /// Whether a directory or a file of that name exists.
    static bool Exists(const TString<wchar_t>& path);
    /// Whether a regular file of that name exists.
    static bool FileExists(const TString<wchar_t>& path);
    static bool DirExists(const TString<wchar_t>& path);

    /// Creates the process-wide object unless it exists. Creates none when out of memory.
    static void CreateInstance();
    /// A copy of the pointer to the process-wide object; empty when there is none.
    static smart_ptr<PathManager> GetInstance();
    /// Releases the process-wide object, which lives on as long as copies of its pointer do.
    static void ReleaseInstance();

    /// Null while there is no process-wide object.
    static smart_ptr<PathManager>* s_pInstance;

private:
    void LocateApplication(const TString<wchar_t>& executable);
    TString<wchar_t> Join(const TString<wchar_t>& directory, const TString<wchar_t>& name) const;
    TString<wchar_t> MakeUniqueName() const;

    TString<wchar_t> m_applicationName;
    TString<wchar_t> m_configurationPath;
    TString<wchar_t> m_applicationDataPath;
    TString<wchar_t> m_applicationPath;
    TString<wchar_t> m_ressourcesPath;
    TString<wchar_t> m_appearancesPath;
    TString<wchar_t> m_pluginsPath;
    TString<wchar_t> m_documentsPath;
    TString<wchar_t> m_pathSeparator;
    TString<wchar_t> m_massStorageDataPath;
    TString<wchar_t> m_applicationUniqueName;
};

} // namespace Toolkit
