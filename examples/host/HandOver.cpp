#include "HandOver.h"

#include <toolkit/files/PathManager.h>
#include <toolkit/ipc/IPCClient.h>
#include <toolkit/system/SingleApplicationInstance.h>
#include <toolkit/system/TickCount.h>
#include <toolkit/threading/Thread.h>

using namespace Toolkit;

const wchar_t* const c_serve = L"-serve";
const wchar_t* const c_quit = L"-quit";
const wchar_t* const c_restart = L"-restart";

Text GetServicePath()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    Text path;
    PathManager::AppendPath(path, paths->GetTempDir(), paths->GetApplicationUniqueName() + L".ipc");
    return path;
}

HandOverResult SendToServingHost(const Text& line)
{
    // Starts no attempt after this time. One attempt may take IPCClient::c_timeoutMs.
    constexpr unsigned int limitMs = 15'000;
    constexpr unsigned int pauseMs = 50;

    const unsigned int startMs = GetTickCount();
    while (!IPCClient::Connect(GetServicePath(), line)) {
        if (!SingleApplicationInstance::GetInstance()->IsAlreadyRunning())
            return HandOverResult::NoOtherHost;
        if (GetTickCount() - startMs > limitMs)
            return HandOverResult::NotAccepted;
        Thread::Sleep(pauseMs);
        // SingleApplicationInstance checks the lock only when it is created.
        SingleApplicationInstance::ReleaseInstance();
        SingleApplicationInstance::CreateInstance();
    }
    return HandOverResult::HandedOver;
}
