#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/module/LibModule.h"
#include "toolkit/threading/Mutex.h"
#include "toolkit/threading/ThreadSafety.h"

#include <list>

namespace Toolkit {

/// The registry of all modules in the process. A host starts and stops them with two calls:
///
///     LibModuleManager::GetInstance()->Initialize(true);
///     ...
///     LibModuleManager::GetInstance()->Release(true);
///
/// Both may be called repeatedly. The registry is initialised from the end of Initialize() to the
/// end of Release(). Any thread may call the non-static operations; each holds one recursive lock
/// for its whole duration, so modules may call them from their own callbacks.
///
/// If a module throws, the operation still calls the other modules, and then rethrows the first
/// exception.
///
/// If another thread of the parent held the lock at a fork, then in the child Unregister() and
/// Release() do nothing, ReleaseInstance() leaks the registry, and Register() and Initialize() wait
/// forever.
class TOOLKIT_API LibModuleManager {
public:
    /// Throws `std::bad_alloc` when out of memory.
    LibModuleManager();
    ~LibModuleManager();

    /// Adds `module`, which stays the caller's and must exist until it is unregistered. If the
    /// registry is initialised, initialises the module immediately, and does not add it if that
    /// throws. If `module` is already registered, only counts the registration. Ignores null. When
    /// out of memory, throws `std::bad_alloc` and adds nothing.
    void Register(LibModule* module);

    /// Undoes one registration. Undoing the last one releases the module, if the registry is
    /// initialised, and removes it. During Release(), the module is removed only when Release()
    /// ends, even if it has been registered again by then; it must exist until then, because
    /// Release() may still call it. Ignores a module that is not registered.
    void Unregister(LibModule* module);

    /// Starts wxWidgets if `initializeFramework` is set and the program does not run its own
    /// application object; does not report a failure. Then initialises all modules in order of
    /// registration, including those that a module registers while being initialised.
    void Initialize(bool initializeFramework);

    /// Releases all modules in reverse order of registration, even without an Initialize(). A
    /// module that is registered during the release is not released, but initialised if the
    /// registry is. Then, if `releaseFramework` is set, makes a `WxLogForwarder` stop forwarding,
    /// and undoes one start of wxWidgets by Initialize(). With `releaseFramework`, call it on the
    /// thread that called Initialize(): on any other thread, wxWidgets shuts down only later.
    void Release(bool releaseFramework);

    /// Creates the registry if it does not exist. Throws `std::bad_alloc` when out of memory.
    static void CreateInstance();
    /// Returns the registry; null if it does not exist.
    static LibModuleManager* GetInstance();
    /// Destroys the registry, but neither releases nor deletes the modules.
    static void ReleaseInstance();

    /// Null while the registry does not exist.
    static LibModuleManager* s_pInstance;

private:
    // While callbacks run, a removed entry stays in the list, with a null module.
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
    // Nodes for m_pendingRemovals, one allocated with each entry: removal must not need memory.
    std::list<ModuleList::iterator> m_removals TOOLKIT_GUARDED_BY(m_mutex);
};

} // namespace Toolkit
