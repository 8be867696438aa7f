#include "toolkit/system/SingleApplicationInstance.h"

#include "toolkit/core/Singleton.Private.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/system/InstanceLock.Private.h"

#include <wx/log.h>
#include <wx/snglinst.h>

namespace Toolkit {

smart_ptr<SingleApplicationInstance>* SingleApplicationInstance::s_pInstance = nullptr;

SingleApplicationInstance::SingleApplicationInstance()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    const TString<wchar_t> name =
        paths.IsValid() ? paths->GetApplicationUniqueName() : TString<wchar_t>();
    // The checker reports whatever it finds odd about the home directory, and asserts on no name.
    const wxLogNull silence;
    if (!name.empty())
        m_checker = std::make_unique<wxSingleInstanceChecker>(wxString(name.data(), name.size()));
    m_lock = std::make_unique<InstanceLock>(name);
}

SingleApplicationInstance::~SingleApplicationInstance()
{
    const wxLogNull silence;
    m_checker.reset();
}

bool SingleApplicationInstance::IsAlreadyRunning() const
{
    // The checker lets two processes through that start at the same moment, and takes a stranger
    // with the process id of a crashed one for it: it decides only where nothing else does.
    switch (m_lock->GetState()) {
    case InstanceLock::State::Held:
        return false;
    case InstanceLock::State::HeldElsewhere:
        return true;
    case InstanceLock::State::Unavailable:
        break;
    }
    return m_checker && m_checker->IsAnotherRunning();
}

void SingleApplicationInstance::CreateInstance()
{
    Singleton::Create(s_pInstance, [] { return new SingleApplicationInstance(); });
}

smart_ptr<SingleApplicationInstance> SingleApplicationInstance::GetInstance()
{
    return Singleton::Get(s_pInstance);
}

void SingleApplicationInstance::ReleaseInstance()
{
    Singleton::Release(s_pInstance);
}

} // namespace Toolkit
