// Tests what a forked child of a busy process may do:
//
//     ForkProgram operation children
//
// `operation` is a key of c_operations. Two threads repeat its busy function while the process
// forks `children` children, one after another. Each child calls the child function of the
// operation once and ends. Prints how many children hung or crashed.

#include "toolkit/core/smart_ptr.h"
#include "toolkit/datetime/DateTime.h"
#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/TextFile.h"
#include "toolkit/logging/FileLogger.h"
#include "toolkit/logging/Log.h"
#include "toolkit/logging/NullLogger.h"
#include "toolkit/logging/WxLogForwarder.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/regExp/RegExp.h"
#include "toolkit/system/SystemInfo.h"
#include "toolkit/threading/EventNotifier.h"
#include "toolkit/threading/Mutex.h"
#include "toolkit/threading/Thread.h"

#include <wx/log.h>

#include <cstdio>
#include <cstdlib>
#include <latch>
#include <map>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Toolkit;

namespace {

constexpr unsigned int c_childTimeoutS = 5;

class Listener {
public:
    void OnEvent() { ++m_events; }

private:
    int m_events = 0;
};

class Notifier : public EventNotifier<Listener> {
public:
    Notifier() { AddListener(new Listener()); }
    void Send()
    {
        Notify([](Listener& listener) { listener.OnEvent(); });
    }
};

class Worker : public Thread {
public:
    ~Worker() override { Wait(); }

private:
    int DoWork() override { return 0; }
};

void UseStrings()
{
    std::vector<TString<wchar_t>> tokens;
    TString<wchar_t>(L"one,two,three").GetTokens(L",", tokens, false);
    UTF8::ToUTF8(tokens.back() + L" and a text that needs memory");
}

void CopyPointer()
{
    static const smart_ptr<int> shared = new int(7);
    const smart_ptr<int> copy = shared; // NOLINT
    const smart_ptr<int> own = new int(7);
}

void LockOwnMutex()
{
    Mutex mutex(false);
    const MutexLocker locker(mutex, MutexInternal::Infinite);
}

void LockSharedMutex()
{
    static Mutex mutex(false);
    const MutexLocker locker(mutex, MutexInternal::Infinite);
}

// Children destroy this mutex, as exit() destroys static ones.
std::unique_ptr<Mutex> s_mutexToDestroy = std::make_unique<Mutex>(false);

void LockMutexToDestroy()
{
    const MutexLocker locker(*s_mutexToDestroy, MutexInternal::Infinite);
}

void DestroyMutex()
{
    s_mutexToDestroy.reset();
}

void MatchPattern()
{
    RegExp pattern("(a+)(b*)", RegExpOptions::None);
    pattern.Match("xxaaab");
}

void FormatDate()
{
    TString<wchar_t> text;
    DateTime().GetIsoString(text, false);
}

void ReadFile()
{
    TextFile file;
    file.Open(L"/etc/passwd");
}

void StartProgram()
{
    SystemInfo::StartProcess(L"/bin/true", L"", true);
}

void Log()
{
    TOOLKIT_LOG(SeverityInfo) << L"text" << ILogger::c_strLogToken3;
}

void SendEvent()
{
    static Notifier notifier;
    notifier.Send();
}

void RunThread()
{
    Worker worker;
    worker.Run();
}

class Module : public LibModule {
public:
    void Initialize() override {}
    void Release() override {}
};

void AddModule()
{
    Module module;
    LibModuleManager::GetInstance()->Register(&module);
    LibModuleManager::GetInstance()->Unregister(&module);
}

void ReplaceLogger()
{
    static const smart_ptr<ILogger> other = new NullLogger();
    const smart_ptr<ILogger> last = ILogger::GetInstance();
    ILogger::SetLogger(other);
    ILogger::SetLogger(last);
}

// Logs through wxWidgets until the process ends.
template <void (*logMessage)()>
class Forwarding : public Thread {
public:
    Forwarding() { Run(); }

private:
    int DoWork() override
    {
        for (;;)
            logMessage();
    }
};

template <void (*logMessage)()>
void ForwardMessages()
{
    static const WxLogForwarder forwarder;
    static auto* const thread = new Forwarding<logMessage>();
    static_cast<void>(thread);
}

void LogWithoutConversion()
{
    static const wxString text = "text";
    wxLog::OnLog(wxLOG_Message, text, 1000);
}

// A fork while wxWidgets converts a string may leave a lock of the C library held in the child.
void LogWithConversion()
{
    wxLogMessage("text");
}

void Exit()
{
    std::exit(0);
}

// What the busy threads repeat, and what each child does once.
struct Operation {
    void (*busy)();
    void (*child)();
};

const std::map<std::string, Operation> c_operations = {
    {"exit while others log", {Log, Exit}},
    {"exit while the logger is replaced", {ReplaceLogger, Exit}},
    {"exit while modules come and go", {AddModule, Exit}},
    {"exit while messages are forwarded", {ForwardMessages<LogWithoutConversion>, Exit}},
    {"exit while messages are made", {ForwardMessages<LogWithConversion>, Exit}},
    {"text", {UseStrings, UseStrings}},
    {"pointer", {CopyPointer, CopyPointer}},
    {"lock of its own", {LockOwnMutex, LockOwnMutex}},
    {"shared lock", {LockSharedMutex, LockSharedMutex}},
    {"destroyed lock", {LockMutexToDestroy, DestroyMutex}},
    {"pattern", {MatchPattern, MatchPattern}},
    {"date", {FormatDate, FormatDate}},
    {"file", {ReadFile, ReadFile}},
    {"program", {StartProgram, StartProgram}},
    {"log", {Log, Log}},
    {"notifier", {SendEvent, SendEvent}},
    {"thread", {RunThread, RunThread}},
};

[[noreturn]] void RunChild(void (*operation)())
{
    ::alarm(c_childTimeoutS);
    operation();
    ::_exit(0);
}

// Returns only after each thread has performed the operation once. The compiler guards the
// construction of a function's static object with a lock. A fork during the construction would
// leave that lock held in the child.
void StartBusyThreads(void (*operation)())
{
    constexpr int threadCount = 2;
    static std::latch ready(threadCount);
    for (int i = 0; i < threadCount; ++i)
        std::thread([operation] {
            operation();
            ready.count_down();
            for (;;)
                operation();
        }).detach();
    ready.wait();
}

// Waits for `child` and returns whether it hung or crashed.
bool Fails(pid_t child)
{
    int status = 0;
    ::waitpid(child, &status, 0);
    return status != 0;
}

} // namespace

int main(int argc, char** argv)
{
    const auto found = c_operations.find(argc > 2 ? argv[1] : "");
    if (found == c_operations.end())
        return 1;
    LibModuleManager::GetInstance()->Initialize(true);
    const std::string directory = std::getenv("TMPDIR");
    // FileLogger puts the name after "/tmp/", so ".." leads from there to the root directory.
    ILogger::SetLogger(new FileLogger(
        SeverityVerbose, L".." + std::wstring(directory.begin(), directory.end()) + L"/fork",
        1 << 20));
    StartBusyThreads(found->second.busy);

    int failures = 0;
    for (int i = std::atoi(argv[2]); i > 0; --i) {
        // Varies the moment at which the fork interrupts the busy threads.
        ::usleep(static_cast<useconds_t>(i % 7) * 100);
        const pid_t child = ::fork();
        if (child == 0)
            RunChild(found->second.child);
        failures += Fails(child) ? 1 : 0;
    }
    std::printf("%d\n", failures);
    std::fflush(stdout);
    std::_Exit(0);
}
