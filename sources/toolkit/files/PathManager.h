#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

namespace Toolkit {

/// Knows where the application is installed and where it keeps its data. The constructors compute
/// the paths; one object serves the whole process.
///
/// The standard directories are those of `wxStandardPaths`, for the application name of `wxApp`.
/// If `HOME` is not valid UTF-8, the home directory comes from the user database.
///
/// The setters take no lock: other threads may read only while no setter runs. When out of memory,
/// the constructors, the setters and RebuildDependentPathes() throw `std::bad_alloc` and change
/// nothing; other operations that return or compose a string produce an empty one. Nothing else is
/// thrown or logged.
class TOOLKIT_API PathManager {
public:
    static const TString<wchar_t> c_strConfigurationFolderName;
    static const TString<wchar_t> c_strRessourcesFolderName;
    /// The same as the ressources folder: appearances are kept there.
    static const TString<wchar_t> c_strAppearancesFolderName;
    static const TString<wchar_t> c_strPluginsFolderName;
    /// Not used by the library: no path is derived from it.
    static const TString<wchar_t> c_strCacheFolderName;

    /// Computes the paths and creates the application data directory with its parents. Does not
    /// report a failure to create it.
    PathManager();
    /// Computes the paths that the program `executable` would have if this user started it in this
    /// environment, without an application name set in `wxApp`. `executable` is an absolute path
    /// without symbolic links. Creates nothing. GetDataDir() and GetUserLocalDataDir() still return
    /// the directories of this process.
    explicit PathManager(const TString<wchar_t>& executable);
    ~PathManager();

    /// Returns the file name of the executable without its last extension: "tool" for tool.bin, ""
    /// for .tool. Empty if the executable is unknown.
    const TString<wchar_t>& GetApplicationName() const { return m_applicationName; }
    /// Returns the directory of the executable, without a separator at its end. If the executable
    /// is unknown, returns the working directory at construction.
    const TString<wchar_t>& GetApplicationPath() const { return m_applicationPath; }
    /// Returns the path of the folder "config" in the data directory.
    const TString<wchar_t>& GetConfigurationPath() const { return m_configurationPath; }
    /// Returns the path that was set; until then, the application's own folder in the user's local
    /// data directory.
    const TString<wchar_t>& GetApplicationDataPath() const { return m_applicationDataPath; }
    /// Returns the path that was set; until then, the folder "ressources" in the resources
    /// directory.
    const TString<wchar_t>& GetApplicationRessourcesPath() const { return m_ressourcesPath; }
    /// Returns the original ressources path; SetApplicationRessourcesPath() does not change it.
    const TString<wchar_t>& GetAppearancesPath() const { return m_appearancesPath; }
    /// Returns the path of the folder "plugins" in the ressources folder.
    const TString<wchar_t>& GetPluginsPath() const { return m_pluginsPath; }
    /// Returns the user's documents directory.
    const TString<wchar_t>& GetDocumentsPath() const { return m_documentsPath; }
    /// Returns the path that was set; empty until then.
    const TString<wchar_t>& GetMassStorageDataPath() const { return m_massStorageDataPath; }
    /// Returns the separator of path components, a string of one character.
    const TString<wchar_t>& GetPathSeparator() const { return m_pathSeparator; }
    /// Returns a name for this application, in this directory, run by this user, in lower case as
    /// by TString::ToLower(): /Apps/My Tool/bin/Tool.app run by ann gives "appsmy toolbintoolann".
    const TString<wchar_t>& GetApplicationUniqueName() const { return m_applicationUniqueName; }

    /// Returns the directory of the application's read-only data, queried on each call.
    TString<wchar_t> GetDataDir() const;
    /// Returns the directory of the user's data on this machine, queried on each call.
    TString<wchar_t> GetUserLocalDataDir() const;
    /// Returns "/tmp", whatever the environment says.
    TString<wchar_t> GetTempDir() const;

    /// Sets the ressources path, and with it the plug-ins path.
    void SetApplicationRessourcesPath(const TString<wchar_t>& path);
    /// Sets the path and creates the directory with its parents. Does not report a failure to
    /// create it.
    void SetApplicationDataPath(const TString<wchar_t>& path);
    void SetMassStorageDataPath(const TString<wchar_t>& path);
    /// Recomputes the plug-ins path from the ressources path.
    void RebuildDependentPathes();

    /// Joins `part` onto `path` with one separator, unless `path` is empty or ends with one: "dir"
    /// and "x" give "dir/x"; "dir/" and "/x" give "dir//x"; "dir" and "" give "dir/".
    static void AppendPath(TString<wchar_t>& path, const TString<wchar_t>& part);
    /// Joins `part` onto `base` in the same way and stores the path in `result`.
    static void AppendPath(TString<wchar_t>& result, const TString<wchar_t>& base,
                           const TString<wchar_t>& part);

    /// Splits `fullPath` by the rules of the system; absent parts become empty. The extension has
    /// no dot: "/a/b.tar.gz" gives "", "/a", "b.tar", "gz".
    static void SplitPath(const TString<wchar_t>& fullPath, TString<wchar_t>& volume,
                          TString<wchar_t>& path, TString<wchar_t>& name,
                          TString<wchar_t>& extension);

    /// Whether a directory or a regular file `path` exists.
    static bool Exists(const TString<wchar_t>& path);
    /// Whether a regular file `path` exists.
    static bool FileExists(const TString<wchar_t>& path);
    static bool DirExists(const TString<wchar_t>& path);

    /// Creates the process-wide object. Does nothing if it exists or when out of memory. Takes no
    /// lock: create and release the object while no other thread calls these three functions.
    static void CreateInstance();
    /// Returns a copy of the pointer to the process-wide object; empty if there is none.
    static smart_ptr<PathManager> GetInstance();
    /// Releases the process-wide object. Copies of its pointer keep it alive.
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
