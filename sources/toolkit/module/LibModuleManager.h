#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/module/LibModule.h"
#include "toolkit/threading/Mutex.h"

#include <list>

namespace Toolkit {

/// The registry of all modules in the process, which a host starts and stops in two calls:
///
///     LibModuleManager::GetInstance()->Initialize(true);
///     ...
///     LibModuleManager::GetInstance()->Release(true);
///
/// Both may be called again and again. Any thread may call the operations; they hold one recursive
/// lock for their whole duration, so modules may call them from their own callbacks.
///
/// What a module throws comes out of the operation that called it, after all that the operation has
/// to do: the other modules have their turn, and of several exceptions the first comes out.
class TOOLKIT_API LibModuleManager {
public:
    LibModuleManager();
    ~LibModuleManager();

    /// Adds `module`, which stays the caller's, and initialises it at once when the registry is
    /// initialised; it is not added when it throws then. A module that is there already is only
    /// counted. Null is ignored. Throws `std::bad_alloc` when out of memory; it is not added then.
    void Register(LibModule* module);

    /// Takes back one registration. With the last one the module is released, when the registry is
    /// initialised, and leaves; during a release pass it leaves when the pass ends, even when it
    /// was registered again meanwhile. A module that is not there is ignored.
    void Unregister(LibModule* module);

    /// Starts the framework when `initializeFramework` says so and the program does not run an
    /// application object of its own, then initialises all modules in the order of their
    /// registration.
    void Initialize(bool initializeFramework);

    /// Releases all modules in the reverse order of their registration. With `releaseFramework` a
    /// start of the framework is undone, if Initialize() made one; a `WxLogForwarder` stops
    /// forwarding before.
    void Release(bool releaseFramework);

    /// Creates the registry unless there is one.
    static void CreateInstance();
    /// The registry; null when there is none.
    static LibModuleManager* GetInstance();
    /// Destroys the registry; modules are neither released nor deleted.
    static void ReleaseInstance();

    /// Null while there is no registry.
    static LibModuleManager* s_pInstance;

private:
    // What has left while the list is walked stays behind without its module until the walk ends.
    struct LibModuleContainer {
        LibModule* module;
        int count;
        bool isLeaving; // when the release pass ends
    };
    using ModuleList = std::list<LibModuleContainer>;
    class Walk;

    ModuleList::iterator Find(const LibModule* module);
    void InitializeModules();
    void ReleaseModules();
    void RemoveLeaving();

    ModuleList m_modules;
    Mutex m_mutex; // guards everything
    int m_initialized;
    int m_releasing;
    int m_walks;
    int m_frameworkStarts;
};

} // namespace Toolkit
