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
    /// As if the system were the one that `platform` describes, which has to outlive the object.
    explicit SystemInfo(const wxPlatformInfo& platform);

    /// Windows CE, Windows Micro and DOS are `PlatformUnknown`. So is every system when out of
    /// memory.
    Platform GetPlatform() const;
    /// Each is -1 when out of memory.
    int GetOSMajorVersion() const;
    int GetOSMinorVersion() const;

    /// Always false on these systems.
    static bool HasAdministratorCredentials();
    /// Always false on these systems.
    static bool HasPowerUserCredentials();
    /// Always true: callers may ask for elevation.
    static bool CanElevateCredentialsUsingUAC();

    /// Starts the program `path`, which is not searched for, with the tokens of `arguments` (see
    /// `CmdLineParser::Tokenize`) behind its own path. It gets this process's environment and no
    /// open file but standard input, output and error.
    ///
    /// The result is the id of the new process; with `wait` it comes when that process has ended,
    /// and is -1 when waiting failed. When no process can be made it is the positive error number
    /// of fork(2). A program that cannot be started shows only in the exit status of the new
    /// process, which is the error number of execv(3). Any thread may call it.
    static int StartProcess(const TString<wchar_t>& path, const TString<wchar_t>& arguments,
                            bool wait);

    /// Creates the process-wide object unless there is one.
    static void CreateInstance();
    /// A copy of the pointer to the process-wide object; empty when there is none.
    static smart_ptr<SystemInfo> GetInstance();
    /// Lets the process-wide object go; it lives on while copies of its pointer do.
    static void ReleaseInstance();

    /// Null while there is no process-wide object.
    static smart_ptr<SystemInfo>* s_pInstance;

private:
    const wxPlatformInfo& Description() const;
    template <typename Number>
    Number Ask(Number (wxPlatformInfo::*question)() const, Number failure) const;

    const wxPlatformInfo* m_platform; // null: the running system's
};

} // namespace Toolkit
