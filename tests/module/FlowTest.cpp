#include "toolkit/config/IniFile.h"
#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/files/TextFile.h"
#include "toolkit/ipc/IPCServer.h"
#include "toolkit/logging/FileLogger.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/threading/BackgroundOperation.h"
#include "toolkit/threading/Thread.h"

#include "support/CapturedLog.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "logging/LogFile.h"

namespace Toolkit::TestSupport {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

std::size_t CountThreads()
{
    const std::filesystem::directory_iterator threads("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(threads), end(threads)));
}

using ThreadList = std::vector<unsigned long>;

// Base of the recorders below. They implement callbacks of the library, and each callback calls
// RecordThread().
template <typename Interface>
class ThreadRecorder : public Interface {
public:
    template <typename... Arguments>
    explicit ThreadRecorder(ThreadList& threads, Arguments... arguments)
        : Interface(arguments...), m_threads(threads)
    {
    }

protected:
    void RecordThread() { m_threads.push_back(Thread::GetCurrentId()); }

private:
    ThreadList& m_threads;
};

class ModuleRecorder : public ThreadRecorder<LibModule> {
    using ThreadRecorder::ThreadRecorder;
    void Initialize() override { RecordThread(); }
    void Release() override { RecordThread(); }
};

class OperationRecorder : public ThreadRecorder<BackgroundOperationHandler> {
    using ThreadRecorder::ThreadRecorder;
    void OnOperationStarted() override { RecordThread(); }
    void OnOperationEnded() override { RecordThread(); }
};

class MessageRecorder : public ThreadRecorder<IPCConnectionEvent> {
    using ThreadRecorder::ThreadRecorder;
    void OnExecute(const TString<wchar_t>& /*text*/) override { RecordThread(); }
};

class LogRecorder : public ThreadRecorder<ILogger> {
    using ThreadRecorder::ThreadRecorder;
    void Write(const TString<wchar_t>& /*text*/) override { RecordThread(); }
};

void CallEveryRecorder(ThreadList& threads, const TString<wchar_t>& service)
{
    ModuleRecorder module(threads);
    LibModuleManager::GetInstance()->Register(&module);
    LibModuleManager::GetInstance()->Unregister(&module);

    BackgroundOperation operation(1);
    operation.AddListener(smart_ptr<BackgroundOperationHandler>(new OperationRecorder(threads)));
    operation.SendOperationStarted();
    operation.SendOperationEnded();

    IPCServer server(service);
    server.AddListener(smart_ptr<IPCConnectionEvent>(new MessageRecorder(threads)));
    server.SendExecuteEvent(L"text");

    LogRecorder(threads, SeverityVerbose) << L"text";
}

// Starts the library as a program does. OpenLog() installs a FileLogger.
class FlowTest : public LogFileTest {
protected:
    FlowTest() { m_registry.Initialize(true); }
    ~FlowTest() override { m_registry.Release(true); }

    void OpenLog() { ILogger::SetLogger(new FileLogger(SeverityInfo, Name(), 1'000'000)); }
    static void CloseLog() { ILogger::SetLogger(smart_ptr<ILogger>()); }

    std::vector<std::wstring> LogLines() const
    {
        std::vector<std::wstring> lines;
        TextFile file;
        if (file.Open(UTF8::ToUNICODE(Path().native())))
            lines.push_back(file.GetFirstLine());
        while (!file.Eof())
            lines.push_back(file.GetNextLine());
        return lines;
    }

    LibModuleManager& m_registry = *LibModuleManager::GetInstance();
    const TempDir m_directory;
};

TEST_F(FlowTest, LogsAMissingIniFileToTheLogFile)
{
    OpenLog();
    TString<wchar_t> path = PathManager::GetInstance()->GetConfigurationPath();
    PathManager::AppendPath(path, L"missing.ini");

    const IniFile settings(path);
    CloseLog();

    EXPECT_EQ(settings.GetUint32(L"Window", L"width", 800), 800u);
    // IniFile logs a fixed line number for a file that cannot be opened: log readers match on it.
    EXPECT_THAT(LogLines(), ElementsAre(IsLogLine(SeverityError, 64, L"Parse",
                                                  L"Unable to open file : " + path)));
}

TEST_F(FlowTest, ReadsAnIniFileFromAPathBuiltByAppendPath)
{
    m_directory.WriteFile(L"settings.ini", "[Window]\n width = 640 \nshown=1\n");
    TString<wchar_t> path = UTF8::ToUNICODE(m_directory.Path().native());
    PathManager::AppendPath(path, L"settings.ini");

    const IniFile settings(path);

    EXPECT_EQ(settings.GetValue(L"Window", L"width", L""), L"640");
    EXPECT_EQ(settings.GetUint32(L"Window", L"width", 800), 640u);
    EXPECT_TRUE(settings.GetBool(L"Window", L"shown", false));
}

TEST_F(FlowTest, RunsCallbacksOnTheCallingThread)
{
    ThreadList threads;
    unsigned long callersThread = Thread::UndefinedThread;
    std::thread caller([&] {
        callersThread = Thread::GetCurrentId();
        CallEveryRecorder(threads, m_directory.File(L"service.ipc"));
    });
    caller.join();

    EXPECT_THAT(threads, AllOf(SizeIs(6), Each(callersThread)));
}

TEST_F(FlowTest, StartsAThreadOnlyForALogFile)
{
    const std::size_t threads = CountThreads();

    BackgroundOperation operation(1);
    operation.SendOperationStarted();
    IPCServer server(m_directory.File(L"service.ipc"));
    ASSERT_TRUE(server.Run());
    EXPECT_EQ(CountThreads(), threads);

    OpenLog();
    EXPECT_EQ(CountThreads(), threads + 1);
    CloseLog();
    Await([&] { return CountThreads() == threads; });
}

} // namespace
} // namespace Toolkit::TestSupport
