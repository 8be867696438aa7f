#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/module/LibModule.h"
#include "toolkit/threading/Mutex.h"
#include "toolkit/threading/ThreadSafety.h"

#include <list>

namespace Toolkit {

/// The registry of all modules in the process, which a host starts and stops in two calls:
///
///     LibModuleManager::GetInstance()->Initialize(true);
///     ...
///     LibModuleManager::GetInstance()->Release(true);
///
/// Both may be called repeatedly. Any thread may call the operations; each holds one recursive lock
/// for its whole duration, so modules may call them from their own callbacks.
///
/// If a module throws, the operation still calls the other modules and then rethrows the first
/// exception.
class TOOLKIT_API LibModuleManager {
public:
    /// Throws `std::bad_alloc` when out of memory.
    LibModuleManager();
    ~LibModuleManager();

    /// Adds `module`, which the caller keeps owning, and initialises it at once if the registry is
    /// initialised; a module that throws then is not added. If the module is registered already,
    /// only its count grows. Null is ignored. Throws `std::bad_alloc`, and adds nothing, when out
    /// of memory.
    void Register(LibModule* module);

    /// Undoes one registration. The last one releases the module, if the registry is initialised,
    /// and removes it. During a release pass it is removed when the pass ends, even if it has been
    /// registered again by then. A module that is not registered is ignored.
    void Unregister(LibModule* module);

    /// Starts wxWidgets, if `initializeFramework` is set and the program does not run its own
    /// application object, then initialises all modules in order of registration.
    void Initialize(bool initializeFramework);

    /// Releases all modules in reverse order of registration. With `releaseFramework`, a
    /// `WxLogForwarder` then stops forwarding, and one start of wxWidgets by Initialize() is
    /// undone.
    void Release(bool releaseFramework);

    /// Creates the registry unless it exists. Throws `std::bad_alloc` when out of memory.
    static void CreateInstance();
    /// The registry; null if it does not exist.
    static LibModuleManager* GetInstance();
    /// Destroys the registry; modules are neither released nor deleted.
    static void ReleaseInstance();

    /// Null while the registry does not exist.
    static LibModuleManager* s_pInstance;

private:
    // An entry that leaves during a loop over the list stays, with a null module, until it ends.
    struct LibModuleContainer {
        LibModule* module;
        int count;
    };
    using ModuleList = std::list<LibModuleContainer>;
    class Walk;

    ModuleList::iterator Find(const LibModule* module) TOOLKIT_REQUIRES(m_mutex);
    void InitializeModules() TOOLKIT_REQUIRES(m_mutex);
    void ReleaseModules() TOOLKIT_REQUIRES(m_mutex);
    void RemovePending() TOOLKIT_REQUIRES(m_mutex);

    ModuleList m_modules TOOLKIT_GUARDED_BY(m_mutex);
    Mutex m_mutex;
    int m_initialized TOOLKIT_GUARDED_BY(m_mutex);
    int m_releasing TOOLKIT_GUARDED_BY(m_mutex);
    std::list<ModuleList::iterator> m_pendingRemovals TOOLKIT_GUARDED_BY(m_mutex);
    int m_walks TOOLKIT_GUARDED_BY(m_mutex);
    int m_frameworkStarts TOOLKIT_GUARDED_BY(m_mutex);
    // A node for m_pendingRemovals for each entry, made with it: leaving must not need memory.
    std::list<ModuleList::iterator> m_removals TOOLKIT_GUARDED_BY(m_mutex);
};

} // namespace Toolkit
