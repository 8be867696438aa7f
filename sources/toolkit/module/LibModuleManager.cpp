#include "toolkit/module/LibModuleManager.h"

#include "toolkit/core/Assert.h"
#include "toolkit/threading/Framework.Private.h"
#include "toolkit/threading/InstalledForwarder.Private.h"

#include <algorithm>

namespace Toolkit {

LibModuleManager::LibModuleManager()
    : m_mutex(false), m_initialized(0), m_releasing(0), m_initializing(0), m_frameworkStarts(0)
{
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
    m_modules.push_back({module, 1});
    if (m_initialized)
        module->Initialize();
}

void LibModuleManager::Unregister(LibModule* module)
{
    const MutexLocker locker(m_mutex, MutexInternal::Infinite);
    const auto found = Find(module);
    // A module that waits for its removal has no registration left to take back.
    if (found == m_modules.end() || found->count <= 0)
        return;
    if (--found->count > 0)
        return;
    // A pass walks the list: nothing is erased under its feet.
    if (m_releasing || m_initializing) {
        m_pendingRemovals.push_back(found);
        return;
    }
    if (m_initialized)
        module->Release();
    m_modules.erase(found);
}

void LibModuleManager::Initialize(bool initializeFramework)
{
    const MutexLocker locker(m_mutex, MutexInternal::Infinite);
    if (initializeFramework) {
        const bool started = Framework::Start();
        ASSERT(started);
        m_frameworkStarts += started ? 1 : 0;
    }
    InitializeModules();
    m_initialized = 1;
}

void LibModuleManager::InitializeModules()
{
    m_initializing = 1;
    for (const LibModuleContainer& entry : m_modules) {
        if (entry.count > 0)
            entry.module->Initialize();
    }
    m_initializing = 0;
    RemovePending();
}

void LibModuleManager::Release(bool releaseFramework)
{
    const MutexLocker locker(m_mutex, MutexInternal::Infinite);
    ReleaseModules();
    if (releaseFramework) {
        InstalledForwarder::Detach();
        // Stopping a framework that somebody else has started would end it for them.
        if (m_frameworkStarts > 0) {
            --m_frameworkStarts;
            Framework::Stop();
        }
    }
    m_initialized = 0;
}

void LibModuleManager::ReleaseModules()
{
    m_releasing = 1;
    std::for_each(m_modules.rbegin(), m_modules.rend(),
                  [](const LibModuleContainer& entry) { entry.module->Release(); });
    m_releasing = 0;
    RemovePending();
}

void LibModuleManager::RemovePending()
{
    for (const ModuleList::iterator& position : m_pendingRemovals)
        m_modules.erase(position);
    m_pendingRemovals.clear();
}

LibModuleManager::ModuleList::iterator LibModuleManager::Find(const LibModule* module)
{
    return std::find_if(m_modules.begin(), m_modules.end(), [module](const LibModuleContainer& e) {
        return e.module == module;
    });
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
    delete s_pInstance;
    s_pInstance = nullptr;
}

} // namespace Toolkit
