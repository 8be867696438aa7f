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
    // A failed attempt is repeated unless this much time has passed. Each attempt may itself take
    // IPCClient::c_timeoutMs.
    constexpr unsigned int retryLimitMs = 15'000;
    constexpr unsigned int pauseMs = 50;

    const unsigned int startMs = GetTickCount();
    while (!IPCClient::Connect(GetServicePath(), line)) {
        // Null when out of memory.
        const auto instance = SingleApplicationInstance::GetInstance();
        if (instance.IsValid() && !instance->IsAlreadyRunning())
            return HandOverResult::NoOtherHost;
        if (GetTickCount() - startMs > retryLimitMs)
            return HandOverResult::NotAccepted;
        Thread::Sleep(pauseMs);
        // The constructor alone checks the lock, so only a new object notices that it is free.
        SingleApplicationInstance::ReleaseInstance();
        SingleApplicationInstance::CreateInstance();
    }
    return HandOverResult::HandedOver;
}
