#include "toolkit/files/PathManager.h"
#include "toolkit/logging/ConsoleLogger.h"
#include "toolkit/logging/DebuggerLogger.h"
#include "toolkit/logging/FileLogger.h"
#include "toolkit/logging/Log.h"
#include "toolkit/logging/NullLogger.h"
#include "toolkit/logging/WxLogForwarder.h"
#include "toolkit/threading/FrameworkHold.h"

#include "support/CapturedLog.h"
#include "support/Soak.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

const TString<wchar_t> c_text = L"a text that is too long for the string itself";
const TString<char> c_narrow = "a text that is too long for the string itself";

// Expects `insert` to call Write() once. When out of memory, it may skip the call.
template <typename Insert>
void Inserts(Attempt& attempt, Insert insert)
{
    CapturedLog log;
    attempt.Run([&] { insert(ILogger::GetLogger()); });
    const std::size_t count = log.Pieces().size();
    attempt.Expect(count == 1, count == 0);
    insert(ILogger::GetLogger());
    attempt.ExpectAlways(log.Pieces().size() == count + 1);
}

template <typename Value>
void InsertsValue(Attempt& attempt, const Value& value)
{
    Inserts(attempt, [&](ILogger& logger) { logger << value; });
}

void WritesLine(Attempt& attempt)
{
    CapturedLog log;
    attempt.Run([&] { TOOLKIT_LOG(SeverityError) << c_text << ILogger::c_strLogToken3; });
    // BeginLogLine() writes eight pieces before the text and the end of the line.
    attempt.Expect(log.Pieces().size() == 10, log.Pieces().size() < 10);
}

void SetsSeverity(Attempt& attempt)
{
    NullLogger logger;
    attempt.Run([&] { logger << SetSeverity(SeverityInfo); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

void UsesNullLogger(Attempt& attempt)
{
    attempt.Run([&] {
        NullLogger logger;
        logger.Write(c_text);
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

template <typename Logger>
void UsesOutputLogger(Attempt& attempt)
{
    static const TString<wchar_t> nothing;
    attempt.Run([&] {
        Logger logger(SeverityError);
        logger.Write(nothing);
    });
}

void CreatesLogger(Attempt& attempt)
{
    smart_ptr<ILogger> logger;
    attempt.Run([&] { logger = ILogger::Create(); });
    attempt.Expect(logger.IsValid(), !logger.IsValid());
}

void CreatesInstance(Attempt& attempt)
{
    ILogger::ReleaseInstance();
    attempt.Run([] { ILogger::CreateInstance(); });
    attempt.Expect(ILogger::GetInstance().IsValid(), !ILogger::GetInstance().IsValid());
    ILogger::GetLogger() << c_text;
    ILogger::CreateInstance();
    attempt.ExpectAlways(ILogger::GetInstance().IsValid());
}

void ReplacesLogger(Attempt& attempt)
{
    ILogger::CreateInstance();
    const smart_ptr<ILogger> logger(new NullLogger());
    ILogger::SetLogger(logger);
    const smart_ptr<ILogger> none = smart_ptr<ILogger>::Empty();
    attempt.Run([&] { ILogger::SetLogger(none); });
    attempt.Expect(ILogger::GetInstance().Get() != logger.Get(),
                   ILogger::GetInstance().Get() == logger.Get());
    ILogger::SetLogger(logger);
    attempt.ExpectAlways(ILogger::GetInstance().Get() == logger.Get());
}

void ReleasesInstance(Attempt& attempt)
{
    ILogger::CreateInstance();
    attempt.Run([] {
        static_cast<void>(ILogger::GetInstance());
        ILogger::ReleaseInstance();
        static_cast<void>(ILogger::GetInstance());
        static_cast<void>(ILogger::GetLogger());
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

void ForwardsMessage(Attempt& attempt)
{
    static const FrameworkHold hold;
    CapturedLog log;
    static const wxString message = "a message that is too long for the string itself";
    {
        const WxLogForwarder forwarder;
        attempt.Run([&] { wxLog::OnLog(wxLOG_Warning, message, 1000); });
    }
    // The forwarder writes seven pieces before the message and the end of the line.
    attempt.Expect(log.Pieces().size() == 9, log.Pieces().size() < 9);
}

void ConstructsForwarder(Attempt& attempt)
{
    static const FrameworkHold hold;
    wxLog::SetActiveTarget(nullptr);
    bool isCreated = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            const WxLogForwarder forwarder;
            isCreated = true;
        }))
        attempt.Expect(isCreated);
}

// Returns the name of a log file that only this process uses.
TString<wchar_t> GetLogName()
{
    return TString<wchar_t>(L"out-of-memory-sweep-" + std::to_wstring(::getpid()));
}

std::filesystem::path GetLogPath()
{
    return std::filesystem::path("/tmp") / (std::wstring(GetLogName()) + L".qvlog");
}

void LogsToFile(Attempt& attempt)
{
    static const FrameworkHold hold;
    PathManager::CreateInstance();
    const TString<wchar_t> name = GetLogName();
    std::unique_ptr<FileLogger> logger;
    const bool isCreated = attempt.Run(Rule::BadAlloc, [&] {
        logger = std::make_unique<FileLogger>(SeverityVerbose, name, 1000000u);
        logger->Write(c_text);
        logger.reset();
    });
    // When out of memory, the text may be lost, but no log may appear in the root directory.
    std::error_code ignored;
    const bool isWritten = std::filesystem::file_size(GetLogPath(), ignored) == c_text.size();
    attempt.Expect(isCreated && isWritten, !std::filesystem::exists("/" / GetLogPath().filename()));
    std::filesystem::remove(GetLogPath(), ignored);
}

void GetsLogPath(Attempt& attempt)
{
    static const FrameworkHold hold;
    PathManager::CreateInstance();
    FileLogger logger(SeverityVerbose, GetLogName(), 1000000u);
    logger.GetPath(5000);
    TString<wchar_t> path;
    attempt.Run([&] {
        logger.Write(c_text);
        path = logger.GetPath(0);
    });
    attempt.Expect(!path.empty(), path.empty());
    std::error_code ignored;
    std::filesystem::remove(GetLogPath(), ignored);
}

constexpr long c_fewAllocations = 6;

} // namespace

std::vector<Operation> LogOperations()
{
    std::vector<Operation> operations = {
        {"Toolkit::BeginLogLine", WritesLine},
        {"Toolkit::ILogger::operator<<", SetsSeverity},
        {"Toolkit::ILogger::ILogger", UsesNullLogger},
        {"Toolkit::ILogger::~ILogger", UsesNullLogger},
        {"Toolkit::NullLogger::NullLogger", UsesNullLogger},
        {"Toolkit::NullLogger::~NullLogger", UsesNullLogger},
        {"Toolkit::NullLogger::Write", UsesNullLogger},
        {"Toolkit::ConsoleLogger::ConsoleLogger", UsesOutputLogger<ConsoleLogger>},
        {"Toolkit::ConsoleLogger::~ConsoleLogger", UsesOutputLogger<ConsoleLogger>},
        {"Toolkit::ConsoleLogger::Write", UsesOutputLogger<ConsoleLogger>},
        {"Toolkit::DebuggerLogger::DebuggerLogger", UsesOutputLogger<DebuggerLogger>},
        {"Toolkit::DebuggerLogger::~DebuggerLogger", UsesOutputLogger<DebuggerLogger>},
        {"Toolkit::DebuggerLogger::Write", UsesOutputLogger<DebuggerLogger>},
        {"Toolkit::ILogger::Create", CreatesLogger},
        {"Toolkit::ILogger::CreateInstance", CreatesInstance},
        {"Toolkit::ILogger::SetLogger", ReplacesLogger},
        {"Toolkit::ILogger::GetInstance", ReleasesInstance},
        {"Toolkit::ILogger::GetLogger", ReleasesInstance},
        {"Toolkit::ILogger::ReleaseInstance", ReleasesInstance},
        {"Toolkit::WxLogForwarder::WxLogForwarder", ConstructsForwarder},
        {"Toolkit::WxLogForwarder::~WxLogForwarder", ConstructsForwarder},
        {"Toolkit::WxLogForwarder::DoLog", ForwardsMessage},
        {"Toolkit::WxLogForwarder::DoLogString", ForwardsMessage},
        {"Toolkit::WxLogForwarder::DoLogRecord", ForwardsMessage},
        // Each attempt takes up to 500 ms: the writer thread notices that it must stop only after
        // its wait for text.
        {"Toolkit::FileLogger::FileLogger", LogsToFile, c_fewAllocations},
        {"Toolkit::FileLogger::~FileLogger", LogsToFile, c_fewAllocations},
        {"Toolkit::FileLogger::DoWork", LogsToFile, c_fewAllocations},
        {"Toolkit::FileLogger::Write", GetsLogPath, c_fewAllocations},
        {"Toolkit::FileLogger::GetPath", GetsLogPath, c_fewAllocations},
    };
    const auto add = [&operations](void (*run)(Attempt&)) {
        operations.push_back({"Toolkit::ILogger::operator<<", run});
    };
    add([](Attempt& attempt) { InsertsValue(attempt, c_text); });
    add([](Attempt& attempt) { InsertsValue(attempt, c_narrow); });
    add([](Attempt& attempt) { InsertsValue(attempt, c_text.c_str()); });
    add([](Attempt& attempt) { InsertsValue(attempt, c_narrow.c_str()); });
    add([](Attempt& attempt) { InsertsValue(attempt, 1234567890123LL); });
    add([](Attempt& attempt) { InsertsValue(attempt, 1234567890); });
    add([](Attempt& attempt) { InsertsValue(attempt, short{12345}); });
    add([](Attempt& attempt) { InsertsValue(attempt, 1234567890123ULL); });
    add([](Attempt& attempt) { InsertsValue(attempt, 1234567890u); });
    add([](Attempt& attempt) { InsertsValue(attempt, static_cast<unsigned short>(12345)); });
    add([](Attempt& attempt) { InsertsValue(attempt, 1234567890123L); });
    add([](Attempt& attempt) { InsertsValue(attempt, 1234567890123UL); });
    add([](Attempt& attempt) { InsertsValue(attempt, 1234567.0); });
    add([](Attempt& attempt) { InsertsValue(attempt, 1234567.0F); });
    add([](Attempt& attempt) { InsertsValue(attempt, SeverityInfo); });
    add([](Attempt& attempt) { InsertsValue(attempt, true); });
    return operations;
}

} // namespace Toolkit::TestSupport
