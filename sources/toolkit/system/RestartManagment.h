#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

namespace Toolkit {

/// Restarts the application by starting a new copy of it.
///
/// The application exits after ActivateRestartProcess() has returned true. The new copy finds
/// "-restart" on its command line, calls WaitingForPreviousProcessFinish() before it takes over and
/// RestartProcessFinish() afterwards. Each of the three logs to the process-wide logger.
class TOOLKIT_API RestartManagment {
public:
    /// A fixed identifier that applications may use. The library does not use it.
    static const TString<wchar_t> c_strUniqueIdentifer;

    RestartManagment();
    virtual ~RestartManagment();

    /// Starts this application again with the argument "-restart", and does not wait for it. The
    /// path of the program has no extension: an application /opt/tool.bin starts /opt/tool. Returns
    /// true even if there is no such program or no process can be created. Returns false if there
    /// is no memory for the path or the argument.
    bool ActivateRestartProcess();

    /// Returns false immediately: no supported system needs to wait.
    bool WaitingForPreviousProcessFinish();

    /// Returns false immediately.
    bool RestartProcessFinish();

    /// Creates the process-wide object. Does nothing if it exists or when out of memory. Takes no
    /// lock: create and release the object while no other thread calls these three functions.
    static void CreateInstance();
    /// Returns a copy of the pointer to the process-wide object; empty if there is none.
    static smart_ptr<RestartManagment> GetInstance();
    /// Releases the process-wide object. Copies of its pointer keep it alive.
    static void ReleaseInstance();

    /// Null while there is no process-wide object.
    static smart_ptr<RestartManagment>* s_pInstance;

private:
    // The process to wait for, on systems that need to wait.
    [[maybe_unused]] int m_previousProcess; // not used: keeps the layout the same
};

} // namespace Toolkit
