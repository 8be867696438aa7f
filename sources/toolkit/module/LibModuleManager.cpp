#include "toolkit/module/LibModuleManager.h"

#include "toolkit/base/Fork.h"
#include "toolkit/core/Assert.h"
#include "toolkit/framework/Framework.h"
#include "toolkit/framework/InstalledForwarder.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <iterator>

namespace Toolkit {
namespace {

// The fork count of the process that last created or started a registry.
std::atomic<unsigned int> s_forks{0};

// True in a forked child if another thread of its parent held `mutex` at the fork. The child does
// not have that thread, so it must not wait for the mutex.
bool IsLockedForever(Mutex& mutex)
{
    if (s_forks == Base::CountForks())
        return false;
    if (!mutex.Lock(0))
        return true;
    mutex.Unlock();
    return false;
}

// Keeps the first exception that a callback throws, so that the other callbacks still run.
class FirstThrown {
public:
    // Not checked: Clang does not see that the lock that `callback` requires is held.
    template <typename Callback>
    void Call(Callback callback) TOOLKIT_NO_THREAD_SAFETY_ANALYSIS
    {
        try {
            callback();
        } catch (...) {
            if (!m_thrown)
                m_thrown = std::current_exception();
        }
    }

    void Rethrow() const
    {
        if (m_thrown)
            std::rethrow_exception(m_thrown);
    }

private:
    std::exception_ptr m_thrown;
};

} // namespace

// Exists while callbacks run. They may change the list, but entries are erased only when the
// outermost Walk ends.
class LibModuleManager::Walk {
public:
    explicit Walk(LibModuleManager& manager) TOOLKIT_REQUIRES(manager.m_mutex) : m_manager(manager)
    {
        ++manager.m_walks;
    }

    // Not checked: Clang does not see that the caller's lock is that of `m_manager`.
    ~Walk() TOOLKIT_NO_THREAD_SAFETY_ANALYSIS
    {
        if (--m_manager.m_walks != 0)
            return;
        m_manager.m_removals.remove_if([](const auto& entry) { return !entry->module; });
        m_manager.m_modules.remove_if([](const auto& entry) { return !entry.module; });
    }

    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

private:
    LibModuleManager& m_manager;
};

LibModuleManager::LibModuleManager()
    : m_mutex(false), m_initialized(0), m_releasing(0), m_walks(0), m_frameworkStarts(0)
{
    s_forks = Base::CountForks();
}

LibModuleManager::~LibModuleManager() = default;

void LibModuleManager::Register(LibModule* module)
{
    const MutexLocker locker(m_mutex, MutexInternal::Infinite);
    if (!module)
        return;
    const auto found = Find(module);
    if (found != m_modules.end()) {
        ++found->count;
        return;
    }
    std::list<ModuleList::iterator> removal(1);
    m_modules.push_back({module, 1});
    removal.front() = std::prev(m_modules.end());
    m_removals.splice(m_removals.end(), removal);
    if (!m_initialized)
        return;
    const Walk walk(*this);
    LibModuleContainer& entry = m_modules.back();
    try {
        module->Initialize();
    } catch (...) {
        // A module that fails to start is not registered.
        entry.module = nullptr;
        throw;
    }
}

void LibModuleManager::Unregister(LibModule* module)
{
    if (IsLockedForever(m_mutex))
        return;
    const MutexLocker locker(m_mutex, MutexInternal::Infinite);
    const auto found = Find(module);
    // A module whose count is 0 is being removed already.
    if (found == m_modules.end() || found->count <= 0)
        return;
    if (--found->count > 0)
        return;
    if (m_releasing) {
        // The entry of a module that was registered again during the release is already pending.
        const auto removal = std::find(m_removals.begin(), m_removals.end(), found);
        if (removal != m_removals.end())
            m_pendingRemovals.splice(m_pendingRemovals.end(), m_removals, removal);
        return;
    }
    const Walk walk(*this);
    FirstThrown thrown;
    if (m_initialized)
        thrown.Call([module] { module->Release(); });
    found->module = nullptr;
    thrown.Rethrow();
}

void LibModuleManager::Initialize(bool initializeFramework)
{
    const MutexLocker locker(m_mutex, MutexInternal::Infinite);
    s_forks = Base::CountForks();
    if (initializeFramework) {
        const bool started = Framework::Start();
        ASSERT(started);
        m_frameworkStarts += started ? 1 : 0;
    }
    FirstThrown thrown;
    thrown.Call([this]() TOOLKIT_REQUIRES(m_mutex) { InitializeModules(); });
    m_initialized = 1;
    thrown.Rethrow();
}

// Initialises all modules, including those that a callback registers.
void LibModuleManager::InitializeModules()
{
    const Walk walk(*this);
    FirstThrown thrown;
    for (const LibModuleContainer& entry : m_modules) {
        if (entry.module)
            thrown.Call([&entry] { entry.module->Initialize(); });
    }
    thrown.Rethrow();
}

void LibModuleManager::Release(bool releaseFramework)
{
    if (IsLockedForever(m_mutex))
        return;
    const MutexLocker locker(m_mutex, MutexInternal::Infinite);
    FirstThrown thrown;
    thrown.Call([this]() TOOLKIT_REQUIRES(m_mutex) { ReleaseModules(); });
    if (releaseFramework) {
        Framework::DetachForwarder();
        // wxWidgets keeps running if something else has started it.
        if (m_frameworkStarts > 0) {
            --m_frameworkStarts;
            Framework::Stop();
        }
    }
    m_initialized = 0;
    thrown.Rethrow();
}

void LibModuleManager::ReleaseModules()
{
    const Walk walk(*this);
    FirstThrown thrown;
    m_releasing = 1;
    // A reverse iterator would visit an entry again if its callback registers a module after it.
    for (auto entry = m_modules.end(); entry != m_modules.begin();) {
        --entry;
        if (entry->module)
            thrown.Call([&entry] { entry->module->Release(); });
    }
    m_releasing = 0;
    RemovePending();
    thrown.Rethrow();
}

void LibModuleManager::RemovePending()
{
    for (const ModuleList::iterator& entry : m_pendingRemovals)
        entry->module = nullptr;
    m_removals.splice(m_removals.end(), m_pendingRemovals);
}

LibModuleManager::ModuleList::iterator LibModuleManager::Find(const LibModule* module)
{
    return std::find_if(m_modules.begin(), m_modules.end(),
                        [module](const LibModuleContainer& e) { return e.module == module; });
}

void LibModuleManager::CreateInstance()
{
    if (!s_pInstance)
        s_pInstance = new LibModuleManager();
}

LibModuleManager* LibModuleManager::GetInstance()
{
    return s_pInstance;
}

void LibModuleManager::ReleaseInstance()
{
    // A registry that stays locked is not deleted: its list may be half changed.
    if (s_pInstance && !IsLockedForever(s_pInstance->m_mutex))
        delete s_pInstance;
    s_pInstance = nullptr;
}

} // namespace Toolkit
