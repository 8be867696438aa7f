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

#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

const TString<wchar_t> c_text = L"a text that is too long for the string itself";
const TString<char> c_narrow = "a text that is too long for the string itself";

// A line may lack some pieces, but no piece is truncated.
template <typename Insert>
void Inserts(Attempt& attempt, Insert insert)
{
    CapturedLog log;
    attempt.Run([&] { insert(ILogger::GetLogger()); });
    const std::size_t count = log.Pieces().size();
    attempt.Expect(count == 1, count == 0);
    insert(ILogger::GetLogger());
    attempt.Always(log.Pieces().size() == count + 1);
}

template <typename Value>
void InsertsValue(Attempt& attempt, const Value& value)
{
    Inserts(attempt, [&](ILogger& logger) { logger << value; });
}

void LineBegun(Attempt& attempt)
{
    CapturedLog log;
    attempt.Run([&] { TOOLKIT_LOG(SeverityError) << c_text << ILogger::c_strLogToken3; });
    attempt.Expect(log.Pieces().size() == 10, log.Pieces().size() < 10);
}

void SeveritySet(Attempt& attempt)
{
    NullLogger logger;
    attempt.Run([&] { logger << SetSeverity(SeverityInfo); });
    attempt.Always(!attempt.HasFailed());
}

void NullMade(Attempt& attempt)
{
    attempt.Run([&] {
        NullLogger logger;
        logger.Write(c_text);
    });
    attempt.Always(!attempt.HasFailed());
}

template <typename Logger>
void StandardMade(Attempt& attempt)
{
    static const TString<wchar_t> nothing;
    attempt.Run([&] {
        Logger logger(SeverityError);
        logger.Write(nothing);
    });
    attempt.Expect(true, true);
}

void Made(Attempt& attempt)
{
    smart_ptr<ILogger> logger;
    attempt.Run([&] { logger = ILogger::Create(); });
    attempt.Expect(logger.IsValid(), !logger.IsValid());
}

void Installed(Attempt& attempt)
{
    ILogger::ReleaseInstance();
    attempt.Run([] { ILogger::CreateInstance(); });
    attempt.Expect(ILogger::GetInstance().IsValid(), !ILogger::GetInstance().IsValid());
    ILogger::GetLogger() << c_text;
    ILogger::CreateInstance();
    attempt.Always(ILogger::GetInstance().IsValid());
}

void Replaced(Attempt& attempt)
{
    ILogger::CreateInstance();
    const smart_ptr<ILogger> logger(new NullLogger());
    ILogger::SetLogger(logger);
    const smart_ptr<ILogger> none = smart_ptr<ILogger>::Empty();
    attempt.Run([&] { ILogger::SetLogger(none); });
    attempt.Expect(ILogger::GetInstance().Get() != logger.Get(),
                   ILogger::GetInstance().Get() == logger.Get());
    ILogger::SetLogger(logger);
    attempt.Always(ILogger::GetInstance().Get() == logger.Get());
}

void LetGo(Attempt& attempt)
{
    ILogger::CreateInstance();
    attempt.Run([] {
        static_cast<void>(ILogger::GetInstance());
        ILogger::ReleaseInstance();
        static_cast<void>(ILogger::GetInstance());
        static_cast<void>(ILogger::GetLogger());
    });
    attempt.Always(!attempt.HasFailed());
}

void ForwarderUsed(Attempt& attempt)
{
    static const FrameworkHold hold;
    CapturedLog log;
    static const wxString message = "a message that is too long for the string itself";
    {
        const WxLogForwarder forwarder;
        attempt.Run([&] { wxLog::OnLog(wxLOG_Warning, message, 1000); });
    }
    attempt.Expect(log.Pieces().size() == 9, log.Pieces().size() < 9);
}

void ForwarderMade(Attempt& attempt)
{
    static const FrameworkHold hold;
    wxLog::SetActiveTarget(nullptr);
    bool isMade = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            const WxLogForwarder forwarder;
            isMade = true;
        }))
        attempt.Expect(isMade);
}

// Returns the name of a log file that only this process uses.
TString<wchar_t> LogName()
{
    return TString<wchar_t>(L"out-of-memory-sweep-" + std::to_wstring(::getpid()));
}

std::filesystem::path LogPath()
{
    return std::filesystem::path("/tmp") / (std::wstring(LogName()) + L".qvlog");
}

void FileLogged(Attempt& attempt)
{
    static const FrameworkHold hold;
    PathManager::CreateInstance();
    const TString<wchar_t> name = LogName();
    std::unique_ptr<FileLogger> logger;
    const bool isMade = attempt.Run(Rule::BadAlloc, [&] {
        logger = std::make_unique<FileLogger>(SeverityVerbose, name, 1000000u);
        logger->Write(c_text);
        logger.reset();
    });
    // The text may be lost, but the log is never written to the root directory.
    std::error_code ignored;
    const bool isWritten = std::filesystem::file_size(LogPath(), ignored) == c_text.size();
    attempt.Expect(isMade && isWritten, !std::filesystem::exists("/" / LogPath().filename()));
    std::filesystem::remove(LogPath(), ignored);
}

void FileLoggerAsked(Attempt& attempt)
{
    static const FrameworkHold hold;
    PathManager::CreateInstance();
    FileLogger logger(SeverityVerbose, LogName(), 1000000u);
    logger.GetPath(5000);
    TString<wchar_t> path;
    attempt.Run([&] {
        logger.Write(c_text);
        path = logger.GetPath(0);
    });
    attempt.Expect(!path.empty(), path.empty());
    std::error_code ignored;
    std::filesystem::remove(LogPath(), ignored);
}

constexpr long c_fewPoints = 6;

} // namespace

std::vector<Operation> LogOperations()
{
    std::vector<Operation> operations = {
        {"Toolkit::BeginLogLine", LineBegun},
        {"Toolkit::ILogger::operator<<", SeveritySet},
        {"Toolkit::ILogger::ILogger", NullMade},
        {"Toolkit::ILogger::~ILogger", NullMade},
        {"Toolkit::NullLogger::NullLogger", NullMade},
        {"Toolkit::NullLogger::~NullLogger", NullMade},
        {"Toolkit::NullLogger::Write", NullMade},
        {"Toolkit::ConsoleLogger::ConsoleLogger", StandardMade<ConsoleLogger>},
        {"Toolkit::ConsoleLogger::~ConsoleLogger", StandardMade<ConsoleLogger>},
        {"Toolkit::ConsoleLogger::Write", StandardMade<ConsoleLogger>},
        {"Toolkit::DebuggerLogger::DebuggerLogger", StandardMade<DebuggerLogger>},
        {"Toolkit::DebuggerLogger::~DebuggerLogger", StandardMade<DebuggerLogger>},
        {"Toolkit::DebuggerLogger::Write", StandardMade<DebuggerLogger>},
        {"Toolkit::ILogger::Create", Made},
        {"Toolkit::ILogger::CreateInstance", Installed},
        {"Toolkit::ILogger::SetLogger", Replaced},
        {"Toolkit::ILogger::GetInstance", LetGo},
        {"Toolkit::ILogger::GetLogger", LetGo},
        {"Toolkit::ILogger::ReleaseInstance", LetGo},
        {"Toolkit::WxLogForwarder::WxLogForwarder", ForwarderMade},
        {"Toolkit::WxLogForwarder::~WxLogForwarder", ForwarderMade},
        {"Toolkit::WxLogForwarder::DoLog", ForwarderUsed},
        {"Toolkit::WxLogForwarder::DoLogString", ForwarderUsed},
        {"Toolkit::WxLogForwarder::DoLogRecord", ForwarderUsed},
        // Each takes half a second, while the writer waits for more text.
        {"Toolkit::FileLogger::FileLogger", FileLogged, c_fewPoints},
        {"Toolkit::FileLogger::~FileLogger", FileLogged, c_fewPoints},
        {"Toolkit::FileLogger::DoWork", FileLogged, c_fewPoints},
        {"Toolkit::FileLogger::Write", FileLoggerAsked, c_fewPoints},
        {"Toolkit::FileLogger::GetPath", FileLoggerAsked, c_fewPoints},
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
