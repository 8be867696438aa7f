#include "toolkit/logging/FileLogger.h"
#include "toolkit/logging/Log.h"
#include "toolkit/system/TickCount.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <memory>
#include <spdlog/async.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

using namespace Toolkit;

constexpr unsigned int c_noLimit = 0xFFFFFFFF;
constexpr int c_lineCount = 100'000;
constexpr int c_largeLineCount = 1'000'000;

std::string MakeLogName()
{
    return "toolkit-benchmark-" + std::to_string(::getpid());
}

std::string MakeLogPath()
{
    return "/tmp/" + MakeLogName() + ".qvlog";
}

long CountLines()
{
    std::ifstream file(MakeLogPath(), std::ios::binary);
    return std::count(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>(), '\n');
}

// Installs a file logger as the process-wide one.
class ToolkitLog {
public:
    explicit ToolkitLog(LogSeverity threshold = SeverityInfo)
    {
        const std::string name = MakeLogName();
        ILogger::CreateInstance();
        ILogger::SetLogger(
            new FileLogger(threshold, std::wstring(name.begin(), name.end()), c_noLimit));
    }
    // Waits until all lines are in the file.
    ~ToolkitLog() { ILogger::ReleaseInstance(); }

    // Sets the severity, then inserts a line in eleven pieces.
    static void WriteLine(const TString<wchar_t>& path)
    {
        TOOLKIT_LOG(SeverityInfo) << L"Unable to open file : " << path << ILogger::c_strLogToken3;
    }
};

// spdlog's asynchronous logger with its default queue. It flushes the file after each message.
class SpdlogLog {
public:
    explicit SpdlogLog(spdlog::level::level_enum threshold = spdlog::level::info)
        : m_pool(std::make_shared<spdlog::details::thread_pool>(
              spdlog::details::default_async_q_size, 1)),
          m_logger(std::make_shared<spdlog::async_logger>(
              "log", std::make_shared<spdlog::sinks::basic_file_sink_mt>(MakeLogPath(), true),
              m_pool))
    {
        m_logger->set_pattern("%v");
        m_logger->set_level(threshold);
        m_logger->flush_on(spdlog::level::info);
    }

    void WriteLine(const std::string& path) const
    {
        m_logger->info("{} {} : {} : {} : Unable to open file : {}", 2, GetTickCount(), __LINE__,
                       __FUNCTION__, path);
    }

private:
    std::shared_ptr<spdlog::details::thread_pool> m_pool;
    std::shared_ptr<spdlog::async_logger> m_logger;
};

const TString<wchar_t> c_widePath = L"/home/user/settings.ini";
const std::string c_narrowPath = "/home/user/settings.ini";

// Measures the time that the caller spends on one line. The writer thread runs concurrently.
template <typename Log, typename Path>
void LogLine(benchmark::State& state, const Path& path)
{
    static std::unique_ptr<Log> log;
    if (state.thread_index() == 0)
        log = std::make_unique<Log>();
    for (auto _ : state)
        log->WriteLine(path);
    if (state.thread_index() != 0)
        return;
    log.reset();
    if (CountLines() != static_cast<long>(state.threads()) * c_lineCount)
        state.SkipWithError("wrong number of lines");
    std::remove(MakeLogPath().c_str());
}

void BM_LogLine_Toolkit(benchmark::State& state)
{
    LogLine<ToolkitLog>(state, c_widePath);
}
BENCHMARK(BM_LogLine_Toolkit)->Iterations(c_lineCount)->Threads(1)->Threads(2)->UseRealTime();

void BM_LogLine_Spdlog(benchmark::State& state)
{
    LogLine<SpdlogLog>(state, c_narrowPath);
}
BENCHMARK(BM_LogLine_Spdlog)->Iterations(c_lineCount)->Threads(1)->Threads(2)->UseRealTime();

// Polls the end of the file until the last line appears.
void AwaitLastLine()
{
    const std::string last = "last\n";
    std::string end;
    while (end != last) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::ifstream file(MakeLogPath(), std::ios::binary);
        file.seekg(-static_cast<int>(last.size()), std::ios::end);
        end.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
}

// Measures the time until a million lines are in the file.
template <typename Log, typename Path>
void LogMillion(benchmark::State& state, const Path& path, const Path& last)
{
    for (auto _ : state) {
        auto log = std::make_unique<Log>();
        const auto start = std::chrono::steady_clock::now();
        for (int i = 1; i < c_largeLineCount; ++i)
            log->WriteLine(path);
        log->WriteLine(last);
        AwaitLastLine();
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(time.count());
        log.reset();
        if (CountLines() != c_largeLineCount)
            state.SkipWithError("wrong number of lines");
        std::remove(MakeLogPath().c_str());
    }
    state.SetItemsProcessed(state.iterations() * c_largeLineCount);
}

void BM_LogMillion_Toolkit(benchmark::State& state)
{
    LogMillion<ToolkitLog>(state, c_widePath, TString<wchar_t>(L"last"));
}
BENCHMARK(BM_LogMillion_Toolkit)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_LogMillion_Spdlog(benchmark::State& state)
{
    LogMillion<SpdlogLog>(state, c_narrowPath, std::string("last"));
}
BENCHMARK(BM_LogMillion_Spdlog)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

// The line whose memory is measured: 62 bytes in eleven pieces.
const TString<wchar_t> c_line[] = {L"2",
                                   L" ",
                                   L"1234567890",
                                   L" : ",
                                   L"90",
                                   L" : ",
                                   L"Log",
                                   L" : ",
                                   L"No such file : ",
                                   L"/home/u/settings.ini",
                                   L"\n"};

std::size_t CountAllocatedBytes()
{
    const struct mallinfo2 heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// Calls `fill`, and reports by how much the heap has grown when `fill` calls its argument.
template <typename Fill>
void MeasureMemory(benchmark::State& state, Fill fill)
{
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::size_t before = CountAllocatedBytes();
        fill([&bytes, before] { bytes = CountAllocatedBytes() - before; });
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}

// The logger cannot open its file, so the lines stay in its queue.
void BM_LogMemory_Toolkit(benchmark::State& state)
{
    MeasureMemory(state, [](auto measure) {
        FileLogger logger(SeverityInfo, L"no/such/directory/log", c_noLimit);
        for (int i = 0; i < c_largeLineCount; ++i) {
            for (const TString<wchar_t>& piece : c_line)
                logger.Write(piece);
        }
        measure();
    });
}
BENCHMARK(BM_LogMemory_Toolkit)->Iterations(1);

// Stores the same lines in one string of the exact capacity.
void BM_LogMemory_Text(benchmark::State& state)
{
    std::string line;
    for (const TString<wchar_t>& piece : c_line)
        line.append(piece.begin(), piece.end());
    MeasureMemory(state, [&line](auto measure) {
        std::string text;
        text.reserve(line.size() * c_largeLineCount);
        for (int i = 0; i < c_largeLineCount; ++i)
            text += line;
        measure();
    });
}
BENCHMARK(BM_LogMemory_Text)->Iterations(1);

void BM_LogFiltered_Toolkit(benchmark::State& state)
{
    {
        const ToolkitLog log(SeverityError);
        for (auto _ : state)
            ToolkitLog::WriteLine(c_widePath);
    }
    if (CountLines() != 0)
        state.SkipWithError("wrong number of lines");
    std::remove(MakeLogPath().c_str());
}
BENCHMARK(BM_LogFiltered_Toolkit);

void BM_LogFiltered_Spdlog(benchmark::State& state)
{
    {
        const SpdlogLog log(spdlog::level::err);
        for (auto _ : state)
            log.WriteLine(c_narrowPath);
    }
    if (CountLines() != 0)
        state.SkipWithError("wrong number of lines");
    std::remove(MakeLogPath().c_str());
}
BENCHMARK(BM_LogFiltered_Spdlog);

} // namespace
