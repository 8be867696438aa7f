#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

class wxPlatformInfo;

namespace Toolkit {

/// Describes the operating system and the user's rights, and starts programs.
class TOOLKIT_API SystemInfo {
public:
    /// The family of the operating system.
    enum Platform { PlatformUnknown, PlatformWindows, PlatformMac, PlatformUnix };

    /// Describes the running system. The first query in the process takes some milliseconds.
    SystemInfo();
    /// Reports what `platform` contains. `platform` must outlive the object.
    explicit SystemInfo(const wxPlatformInfo& platform);

    /// Returns the family of the system. Windows CE, Windows Micro, DOS and OS/2 count as
    /// `PlatformUnknown`; so does every system when out of memory.
    Platform GetPlatform() const;
    /// Return the two parts of the system's version; -1 when out of memory.
    int GetOSMajorVersion() const;
    int GetOSMinorVersion() const;

    /// Returns the version of wxWidgets that the library was built with: "wxWidgets 3.2.2". Empty
    /// when out of memory.
    static TString<wchar_t> GetFrameworkVersion();

    /// Always returns false.
    static bool HasAdministratorCredentials();
    /// Always returns false.
    static bool HasPowerUserCredentials();
    /// Always returns true: callers may ask for elevation.
    static bool CanElevateCredentialsUsingUAC();

    /// Starts the program `path` without searching PATH. The program's arguments are `path` and
    /// the tokens of `arguments` (see `CmdLineParser::Tokenize`). The program inherits the
    /// environment, and of the open files only standard input, output and error.
    ///
    /// Returns the id of the new process. With `wait`, returns it after that process has ended, or
    /// -1 if waiting failed. Without `wait`, the process remains a zombie after its end until the
    /// caller calls waitpid(2). If no process can be created, returns the positive error number of
    /// fork(2), which looks like a process id: ENOMEM when out of memory. If the program cannot be
    /// executed, only the exit status of the new process reports it: the error number of execv(3).
    /// Any thread may call it.
    static int StartProcess(const TString<wchar_t>& path, const TString<wchar_t>& arguments,
                            bool wait);

    /// Creates the process-wide object. Does nothing if it exists or when out of memory. Takes no
    /// lock: create and release the object while no other thread calls these three functions.
    static void CreateInstance();
    /// Returns a copy of the pointer to the process-wide object; empty if there is none.
    static smart_ptr<SystemInfo> GetInstance();
    /// Releases the process-wide object. Copies of its pointer keep it alive.
    static void ReleaseInstance();

    /// Null while there is no process-wide object.
    static smart_ptr<SystemInfo>* s_pInstance;

private:
    const wxPlatformInfo& Description() const;
    template <typename Number>
    Number Query(Number (wxPlatformInfo::*getter)() const, Number failure) const;

    const wxPlatformInfo* m_platform; // null means the running system
};

} // namespace Toolkit
