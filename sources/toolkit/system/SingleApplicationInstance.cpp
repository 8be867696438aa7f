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
    m_lock = std::make_unique<InstanceLock>(name);
    if (m_lock->GetState() != InstanceLock::State::Unavailable || name.empty())
        return;
    // The framework's checker lets two processes through that start at the same moment, takes a
    // stranger with the process id of a crashed one for it, and waits for the disk, which is longer
    // than all the rest of a start: it serves only where no better lock can be had. It reports
    // whatever it finds odd about the home directory.
    const wxLogNull silence;
    m_checker = std::make_unique<wxSingleInstanceChecker>(wxString(name.data(), name.size()));
}

SingleApplicationInstance::~SingleApplicationInstance()
{
    const wxLogNull silence;
    m_checker.reset();
}

bool SingleApplicationInstance::IsAlreadyRunning() const
{
    if (m_checker)
        return m_checker->IsAnotherRunning();
    return m_lock->GetState() == InstanceLock::State::HeldElsewhere;
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
