#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

namespace Toolkit {

/// Starts a fresh copy of the application, for one that wants to restart.
///
/// The application ends after a successful activation. The new copy finds "-restart" on its command
/// line, calls WaitingForPreviousProcessFinish() before it takes over and RestartProcessFinish()
/// when it has. Each operation writes its progress to the process-wide logger.
class TOOLKIT_API RestartManagment {
public:
    /// An identifier for applications that need a fixed one.
    static const TString<wchar_t> c_strUniqueIdentifer;

    RestartManagment();
    virtual ~RestartManagment();

    /// Starts the executable of this application, named without its extension, with the argument
    /// "-restart" and does not wait for it. True also when there is no such program: that shows
    /// only in the new process. False when out of memory.
    bool ActivateRestartProcess();

    /// False at once: nothing is awaited on these systems.
    bool WaitingForPreviousProcessFinish();

    /// False at once.
    bool RestartProcessFinish();

    /// Creates the process-wide object unless there is one.
    static void CreateInstance();
    /// A copy of the pointer to the process-wide object; empty when there is none.
    static smart_ptr<RestartManagment> GetInstance();
    /// Lets the process-wide object go; it lives on while copies of its pointer do.
    static void ReleaseInstance();

    /// Null while there is no process-wide object.
    static smart_ptr<RestartManagment>* s_pInstance;

private:
    // The process to wait for, on systems that wait.
    [[maybe_unused]] int m_previousProcess; // unused, keeps the layout
};

} // namespace Toolkit
