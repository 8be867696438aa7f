#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

class wxPlatformInfo;

namespace Toolkit {

/// The operating system, the user's rights, and starting programs.
class TOOLKIT_API SystemInfo {
public:
    /// The family of the operating system.
    enum Platform { PlatformUnknown, PlatformWindows, PlatformMac, PlatformUnix };

    /// Describes the running system. The first question about it takes some milliseconds.
    SystemInfo();
    /// Reports the system that `platform` describes. `platform` must outlive the object.
    explicit SystemInfo(const wxPlatformInfo& platform);

    /// Windows CE, Windows Micro and DOS are `PlatformUnknown`. So is every system when out of
    /// memory.
    Platform GetPlatform() const;
    /// Both return -1 when out of memory.
    int GetOSMajorVersion() const;
    int GetOSMinorVersion() const;

    /// The version of wxWidgets that the library was built with: "wxWidgets 3.2.2". Empty when out
    /// of memory.
    static TString<wchar_t> GetFrameworkVersion();

    /// Returns false on these systems.
    static bool HasAdministratorCredentials();
    /// Returns false on these systems.
    static bool HasPowerUserCredentials();
    /// Returns true: callers may ask for elevation.
    static bool CanElevateCredentialsUsingUAC();

    /// Starts the program `path` without a search along PATH. Its arguments are its own path and
    /// the tokens of `arguments` (see `CmdLineParser::Tokenize`). It inherits the environment, and
    /// of the open files only standard input, output and error.
    ///
    /// Returns the id of the new process; with `wait`, after that process has ended, or -1 when
    /// waiting failed. When no process can be created, returns the positive error number of
    /// fork(2): ENOMEM when out of memory. A program that cannot be executed shows only in the exit
    /// status of the new process, which is the error number of execv(3). Any thread may call it.
    static int StartProcess(const TString<wchar_t>& path, const TString<wchar_t>& arguments,
                            bool wait);

    /// Creates the process-wide object. Does nothing when it exists or when out of memory.
    static void CreateInstance();
    /// Returns a copy of the pointer to the process-wide object; empty when there is none.
    static smart_ptr<SystemInfo> GetInstance();
    /// Releases the process-wide object, which lives on as long as copies of its pointer do.
    static void ReleaseInstance();

    /// Null while there is no process-wide object.
    static smart_ptr<SystemInfo>* s_pInstance;

private:
    const wxPlatformInfo& Description() const;
    template <typename Number>
    Number Ask(Number (wxPlatformInfo::*question)() const, Number failure) const;

    const wxPlatformInfo* m_platform; // null means the running system
};

} // namespace Toolkit
