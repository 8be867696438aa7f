#include "toolkit/system/SingleApplicationInstance.h"

#include "toolkit/base/InstanceLock.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Singleton.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/system/CheckerFile.Private.h"

namespace Toolkit {

smart_ptr<SingleApplicationInstance>* SingleApplicationInstance::s_pInstance = nullptr;

// Running out of memory has the same effect as a lock file that cannot be created.
SingleApplicationInstance::SingleApplicationInstance()
{
    static_cast<void>(Base::RunsWithoutThrowing([this] { TakeLock(); }));
}

void SingleApplicationInstance::TakeLock()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    const TString<wchar_t> name =
        paths.IsValid() ? paths->GetApplicationUniqueName() : TString<wchar_t>();
    m_lock = std::make_unique<Base::InstanceLock>(name);
    // A process that finds the lock held does not touch the checker's file, so processes that start
    // at the same time do not race for it.
    if (m_lock->GetState() == Base::InstanceLock::State::HeldElsewhere)
        return;
    m_checkerFile = std::make_unique<CheckerFile>(name);
    // Another process was first, so this one must not hold the lock.
    if (m_checkerFile->IsHeldElsewhere())
        m_lock.reset();
}

SingleApplicationInstance::~SingleApplicationInstance()
{
    // Removes the file before the lock is released: the next owner of the lock must not find it.
    m_checkerFile.reset();
}

bool SingleApplicationInstance::IsAlreadyRunning() const
{
    return (m_lock && m_lock->GetState() == Base::InstanceLock::State::HeldElsewhere) ||
           (m_checkerFile && m_checkerFile->IsHeldElsewhere());
}

TString<wchar_t> SingleApplicationInstance::GetLockPath(const TString<wchar_t>& uniqueName)
{
    return Base::TryOr({}, [&] {
        return TString<wchar_t>(Base::DecodeUtf8(Base::InstanceLock::MakePath(uniqueName)));
    });
}

void SingleApplicationInstance::CreateInstance()
{
    Base::CreateSingleton(s_pInstance, [] { return new SingleApplicationInstance(); });
}

smart_ptr<SingleApplicationInstance> SingleApplicationInstance::GetInstance()
{
    return Base::GetSingleton(s_pInstance);
}

void SingleApplicationInstance::ReleaseInstance()
{
    Base::ReleaseSingleton(s_pInstance);
}

} // namespace Toolkit
