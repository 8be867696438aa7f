#include "toolkit/system/RestartManagment.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Singleton.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/logging/Log.h"
#include "toolkit/system/SystemInfo.h"

#include <limits>

namespace Toolkit {
namespace {

constexpr const wchar_t* c_restartArgument = L"-restart";

// Line numbers logged for the steps of a restart. Fixed, because log readers match on them.
constexpr int c_waitingEntryLine = 51;
constexpr int c_waitingExitLine = 101;
constexpr int c_activateEntryLine = 114;
constexpr int c_activateExitLine = 155;
constexpr int c_finishEntryLine = 168;

// Returns false when out of memory, which AppendPath() reports as an empty path.
bool GetProgramPath(TString<wchar_t>& path)
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    if (!paths.IsValid())
        return true;
    PathManager::AppendPath(path, paths->GetApplicationPath(), paths->GetApplicationName());
    return !path.empty() || paths->GetApplicationPath().empty();
}

} // namespace

smart_ptr<RestartManagment>* RestartManagment::s_pInstance = nullptr;

RestartManagment::RestartManagment() : m_previousProcess(0) {}

RestartManagment::~RestartManagment() = default;

bool RestartManagment::ActivateRestartProcess()
{
    TOOLKIT_LOG_AT_LINE(SeverityInfo, c_activateEntryLine)
        << L">>> ActivateRestartProcess()" << ILogger::c_strLogToken3;
    TString<wchar_t> program;
    const bool result = Base::TryOr(false, [&program] {
        // By design, only this value counts as a failure; the error number of a failed start does
        // not.
        return GetProgramPath(program) &&
               SystemInfo::StartProcess(program, c_restartArgument, false) !=
                   std::numeric_limits<int>::max();
    });
    TOOLKIT_LOG_AT_LINE(SeverityInfo, c_activateExitLine)
        << L"<<< ActivateRestartProcess(" << program << L")=" << result << ILogger::c_strLogToken3;
    return result;
}

bool RestartManagment::WaitingForPreviousProcessFinish()
{
    TOOLKIT_LOG_AT_LINE(SeverityInfo, c_waitingEntryLine)
        << L">>> WaitingForPreviousProcessFinish()" << ILogger::c_strLogToken3;
    TOOLKIT_LOG_AT_LINE(SeverityInfo, c_waitingExitLine)
        << L"<<< WaitingForPreviousProcessFinish()" << ILogger::c_strLogToken3;
    return false;
}

bool RestartManagment::RestartProcessFinish()
{
    TOOLKIT_LOG_AT_LINE(SeverityInfo, c_finishEntryLine)
        << L">>> RestartProcessFinish()" << ILogger::c_strLogToken3;
    return false;
}

void RestartManagment::CreateInstance()
{
    Base::CreateSingleton(s_pInstance, [] { return new RestartManagment(); });
}

smart_ptr<RestartManagment> RestartManagment::GetInstance()
{
    return Base::GetSingleton(s_pInstance);
}

void RestartManagment::ReleaseInstance()
{
    Base::ReleaseSingleton(s_pInstance);
}

} // namespace Toolkit
