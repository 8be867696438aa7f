#include "toolkit/logging/FileLogger.h"

#include "toolkit/base/ExecutablePath.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/TickCount.h"
#include "toolkit/base/UnloadTask.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/encoding/StringConvert.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/logging/LogFile.Private.h"
#include "toolkit/logging/LogInbox.Private.h"
#include "toolkit/logging/LogPieceBlock.Private.h"
#include "toolkit/logging/LogPieceQueue.Private.h"

#include <chrono>
#include <cstddef>
#include <new>
#include <unistd.h>

namespace Toolkit {
namespace {

constexpr unsigned int c_maxDataWaitMs = 500;
constexpr unsigned int c_busyPollingMs = 100;
constexpr unsigned int c_pollIntervalMs = 10;
constexpr std::chrono::seconds c_maxInUseWait(2);

std::size_t GetPageSize()
{
    static const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return pageSize;
}

// Returns the same name before and after the library is started.
TString<wchar_t> GetApplicationName()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    if (paths.IsValid())
        return paths->GetApplicationName();
    TString<wchar_t> volume;
    TString<wchar_t> directory;
    TString<wchar_t> name;
    TString<wchar_t> extension;
    const TString<wchar_t> executable = Base::GetExecutablePath();
    PathManager::SplitPath(executable, volume, directory, name, extension);
    if (name.empty() && !executable.empty()) // SplitPath() ran out of memory
        throw std::bad_alloc();
    return name;
}

// Returns the path with a trailing separator.
TString<wchar_t> FindLogDirectory()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    if (!paths.IsValid())
        return L"/tmp/";
    TString<wchar_t> directory = paths->GetTempDir();
    // GetTempDir() ran out of memory. Without this check the log would be in the root directory.
    if (directory.empty())
        throw std::bad_alloc();
    directory += paths->GetPathSeparator();
    return directory;
}

} // namespace

FileLogger::FileLogger(LogSeverity threshold, const TString<wchar_t>& name,
                       unsigned int sizeLimitBytes)
    : ILogger(threshold), m_queue(std::make_unique<LogInbox>()), m_pathLock(false),
      m_dataEvent(new EventObject(true, false)), m_stopEvent(new EventObject(false, false)),
      m_name(name.empty() ? GetApplicationName() : name), m_file(std::make_unique<LogFile>()),
      m_sizeLimitBytes(sizeLimitBytes), m_directory(FindLogDirectory()),
      m_atUnload(std::make_unique<Base::UnloadTask>(
          [](void* logger) { static_cast<FileLogger*>(logger)->EndAtUnload(); }, this))
{
    Run();
}

FileLogger::~FileLogger()
{
    // Also returns in a forked child: the child has no writer thread, and a lock that the thread
    // held at the fork stays locked.
    if (!IsRunning())
        return;
    m_stopEvent->Signal();
    Wait();
}

// Ends the writer thread of a logger that still exists when the library is unloaded, for example
// because another thread owns it. Other threads may keep logging to it, so the wait is limited.
void FileLogger::EndAtUnload()
{
    constexpr std::chrono::seconds maxWait(2);

    if (!IsRunning())
        return;
    m_stopEvent->Signal();
    const auto deadline = std::chrono::steady_clock::now() + maxWait;
    while (IsRunning() && std::chrono::steady_clock::now() < deadline)
        Sleep(c_pollIntervalMs);
}

void FileLogger::Write(const TString<wchar_t>& text)
{
    // Write() reports no errors: text that does not fit into memory is lost.
    static_cast<void>(Base::RunsWithoutThrowing([&] {
        // If the queue was not empty, the thread that put the first piece into it signals.
        if (m_queue->Put(text))
            m_dataEvent->Signal();
    }));
}

TString<wchar_t> FileLogger::GetPath(unsigned int timeoutMs) const
{
    const unsigned int beginTicks = Base::GetTickCount();
    TString<wchar_t> path = CurrentPath();
    while (path.empty() && Base::GetTickCount() - beginTicks < timeoutMs) {
        Sleep(c_pollIntervalMs);
        path = CurrentPath();
    }
    return path;
}

TString<wchar_t> FileLogger::CurrentPath() const
{
    return Base::TryOr({}, [this] {
        const MutexLocker locker(m_pathLock, MutexInternal::Infinite);
        return m_path;
    });
}

int FileLogger::DoWork()
{
    if (!OpenFile())
        return 1;
    LogPieceQueue batch;
    bool hadText = false;
    while (WaitForData(hadText)) {
        hadText = Drain(batch);
        // The memory of a batch is reused while text keeps arriving.
        if (!hadText)
            batch.Release();
        WrapAround();
    }
    m_file->Close();
    return 0;
}

// False if the logger was stopped before a file could be opened.
bool FileLogger::OpenFile()
{
    bool isOpen = OpenOwnName();
    // Tries a fallback file before the loop checks the stop event, so that a logger that is stopped
    // while another process uses its file still writes its queue.
    if (!isOpen && m_file->IsInUse())
        isOpen = OpenFallback();
    while (!isOpen) {
        if (m_stopEvent->Wait(c_pollIntervalMs))
            return false;
        isOpen = OpenFallback();
    }
    return true;
}

// Waits up to 2 s while another process uses the file, so that a restarted program gets its usual
// file if the previous process ends in time.
bool FileLogger::OpenOwnName()
{
    using Clock = std::chrono::steady_clock;

    const Clock::time_point deadline = Clock::now() + c_maxInUseWait;
    bool isOpen = Open(L"");
    while (!isOpen && m_file->IsInUse() && Clock::now() < deadline &&
           !m_stopEvent->Wait(c_pollIntervalMs))
        isOpen = Open(L"");
    return isOpen;
}

bool FileLogger::OpenFallback()
{
    return Base::TryOr(false, [this] {
        return Open(c_strTickSeparator + StringConvert::UStringFromUint32(Base::GetTickCount()));
    });
}

// Running out of memory is a failure like any other: the next attempt may succeed.
bool FileLogger::Open(const TString<wchar_t>& suffix)
{
    return Base::TryOr(false, [this, &suffix] {
        TString<wchar_t> path = m_directory + m_name + suffix + c_strLogExtension;
        if (!m_file->Open(Base::EncodeUtf8(path)))
            return false;
        const MutexLocker locker(m_pathLock, MutexInternal::Infinite);
        m_path.swap(path);
        return true;
    });
}

// Waits up to 500 ms for text. False if the logger was stopped and all text that arrived before the
// stop is in the file: the last check notices text that arrived after the wait.
//
// `LogMillion`: text arrives in bursts, so after a batch this polls the event every 10 ms for
// 100 ms. With the 200 ms interval of `EventObject`, writing a million lines takes up to a third
// longer.
bool FileLogger::WaitForData(bool isBusy)
{
    unsigned int waitMs = c_maxDataWaitMs;
    if (isBusy) {
        for (unsigned int ms = 0; ms < c_busyPollingMs; ms += c_pollIntervalMs) {
            if (m_dataEvent->Wait(c_pollIntervalMs))
                return true;
        }
        waitMs -= c_busyPollingMs;
    }
    return m_dataEvent->Wait(waitMs) || !m_stopEvent->Wait(0) || m_dataEvent->Wait(0);
}

// Writes all queued text, including text that arrives while it writes; false if there was none. The
// queue is not locked while the file is written.
bool FileLogger::Drain(LogPieceQueue& batch)
{
    for (bool hadText = false;; hadText = true) {
        // LogMillion: without this, the signal for text that is taken here ends the next wait. The
        // logger then seems idle, and a million lines sometimes take 1.5 times as long.
        static_cast<void>(m_dataEvent->Wait(0));
        batch.Clear();
        m_queue->MoveTo(batch);
        if (batch.IsEmpty())
            return hadText;
        WriteBatch(batch);
    }
}

void FileLogger::WriteBatch(const LogPieceQueue& batch)
{
    LogPieceBlock block(GetPageSize());
    block.Begin(m_file->FindPosition());
    batch.VisitPieces([this, &block](auto piece) {
        if (block.Append(piece))
            return;
        WriteBlock(block);
        block.Begin(m_file->FindPosition());
        block.Append(piece);
    });
    WriteBlock(block);
}

void FileLogger::WriteBlock(const LogPieceBlock& block)
{
    m_file->Write(block.Data(), block.Size());
}

void FileLogger::WrapAround()
{
    if (m_file->FindPosition() >= static_cast<long long>(m_sizeLimitBytes))
        m_file->Rewind();
}

} // namespace Toolkit
