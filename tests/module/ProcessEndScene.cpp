#include "ProcessEndScene.h"

#include "toolkit/ipc/IPCServer.h"
#include "toolkit/logging/FileLogger.h"
#include "toolkit/logging/Log.h"
#include "toolkit/logging/WxLogForwarder.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/threading/Thread.h"

#include <wx/log.h>

#include <cstdlib>
#include <cstring>
#include <future>
#include <memory>
#include <string>
#include <thread>

using namespace Toolkit;

namespace {

constexpr unsigned int c_sizeLimit = 1 << 20;

// Runs until its destructor asks it to end.
class Worker : public Thread {
public:
    void RunAndWaitUntilStarted()
    {
        Run();
        m_started.get_future().wait();
    }

private:
    int DoWork() override
    {
        m_started.set_value();
        while (!Thread::TestDestroy())
            Sleep(1);
        return 0;
    }

    std::promise<void> m_started;
};

// Runs a thread between Initialize() and Release().
class WorkingModule : public LibModule {
public:
    WorkingModule() { LibModuleManager::GetInstance()->Register(this); }
    ~WorkingModule() override
    {
        if (LibModuleManager::GetInstance())
            LibModuleManager::GetInstance()->Unregister(this);
    }

    void Initialize() override
    {
        m_worker = std::make_unique<Worker>();
        m_worker->RunAndWaitUntilStarted();
    }
    void Release() override { m_worker.reset(); }

private:
    std::unique_ptr<Worker> m_worker;
};

smart_ptr<ILogger> s_logger;
smart_ptr<Thread> s_thread;
std::unique_ptr<WxLogForwarder> s_forwarder;
std::unique_ptr<IPCServer> s_server;

// Returns the path of `name` in TMPDIR, which only this process uses.
std::wstring PathInTmpDirectory(const wchar_t* name)
{
    const std::string directory = std::getenv("TMPDIR");
    return std::wstring(directory.begin(), directory.end()) + L"/" + name;
}

FileLogger* CreateFileLogger()
{
    // FileLogger puts the name after "/tmp/", so ".." leads from there to the root directory.
    return new FileLogger(SeverityVerbose, L".." + PathInTmpDirectory(L"scene"), c_sizeLimit);
}

void LogLines(ILogger& logger)
{
    for (int i = 0; i < 100; ++i)
        logger.Write(L"line " + std::to_wstring(i) + L"\n");
}

[[noreturn]] void LogForEver()
{
    for (;;)
        TOOLKIT_LOG(SeverityInfo) << L"still here" << ILogger::c_strLogToken3;
}

void RunThread(smart_ptr<Thread>& thread)
{
    auto* const worker = new Worker();
    thread = worker;
    worker->RunAndWaitUntilStarted();
}

void SetUpLogger(const char* what)
{
    ILogger::SetLogger(CreateFileLogger());
    LogLines(ILogger::GetLogger());
    if (std::strcmp(what, "static logger") == 0) {
        static smart_ptr<ILogger> copy;
        copy = ILogger::GetInstance();
    } else if (std::strcmp(what, "global logger") == 0) {
        s_logger = ILogger::GetInstance();
    } else if (std::strcmp(what, "thread_local logger") == 0) {
        thread_local smart_ptr<ILogger> copy;
        copy = ILogger::GetInstance();
    } else if (std::strcmp(what, "forwarder") == 0) {
        s_forwarder = std::make_unique<WxLogForwarder>();
    } else if (std::strcmp(what, "leaked forwarder") == 0) {
        new WxLogForwarder(); // never deleted
    }
}

void SetUpThread(const char* what)
{
    if (std::strcmp(what, "static thread") == 0) {
        static smart_ptr<Thread> thread;
        RunThread(thread);
    } else if (std::strcmp(what, "global thread") == 0) {
        RunThread(s_thread);
    } else if (std::strcmp(what, "thread_local thread") == 0) {
        thread_local smart_ptr<Thread> thread;
        RunThread(thread);
    } else if (std::strcmp(what, "unstarted thread") == 0) {
        s_thread = new Worker();
    } else if (std::strcmp(what, "paused thread") == 0) {
        RunThread(s_thread);
        s_thread->Pause();
    } else if (std::strcmp(what, "logging threads") == 0) {
        ILogger::SetLogger(CreateFileLogger());
        for (int i = 0; i < 2; ++i)
            std::thread(LogForEver).detach();
    } else if (std::strcmp(what, "module's thread") == 0) {
        static WorkingModule module;
    }
}

} // namespace

void StartLibrary()
{
    LibModuleManager::GetInstance()->Initialize(true);
}

void SetUpScene(const char* what)
{
    if (std::strcmp(what, "private logger") == 0) {
        // Never installed as the process-wide logger.
        s_logger = CreateFileLogger();
        LogLines(*s_logger);
    } else if (std::strcmp(what, "server") == 0) {
        s_server = std::make_unique<IPCServer>(PathInTmpDirectory(L"scene.ipc"));
        if (!s_server->Run())
            std::abort();
    } else if (std::strstr(what, "thread") && !std::strstr(what, "logger")) {
        SetUpThread(what);
    } else {
        SetUpLogger(what);
    }
}
