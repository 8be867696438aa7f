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
#include <new>
#include <unistd.h>

namespace Toolkit {
namespace {

constexpr unsigned int c_dataWaitMs = 500;
constexpr unsigned int c_busyWaitMs = 100;
constexpr unsigned int c_busyStepMs = 10;
constexpr unsigned int c_openRetryMs = 10;
constexpr std::chrono::seconds c_inUseWait(2);

std::size_t PageSize()
{
    static const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return pageSize;
}

// The names that a started library gives, and before its start the same ones without it.
TString<wchar_t> ApplicationName()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    if (paths.IsValid())
        return paths->GetApplicationName();
    TString<wchar_t> volume;
    TString<wchar_t> directory;
    TString<wchar_t> name;
    TString<wchar_t> extension;
    PathManager::SplitPath(Base::GetExecutablePath(), volume, directory, name, extension);
    return name;
}

// With a separator at its end.
TString<wchar_t> LogDirectory()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    return paths.IsValid() ? TString<wchar_t>(paths->GetTempDir() + paths->GetPathSeparator())
                           : TString<wchar_t>(L"/tmp/");
}

} // namespace

FileLogger::FileLogger(LogSeverity threshold, const TString<wchar_t>& name,
                       unsigned int sizeLimitBytes)
    : ILogger(threshold), m_queue(std::make_unique<LogInbox>()), m_pathLock(false),
      m_dataEvent(new EventObject(true, false)), m_stopEvent(new EventObject(false, false)),
      m_name(name.empty() ? ApplicationName() : name), m_file(std::make_unique<LogFile>()),
      m_sizeLimitBytes(sizeLimitBytes), m_directory(LogDirectory()),
      m_atUnload(std::make_unique<Base::UnloadTask>(
          [](void* logger) { static_cast<FileLogger*>(logger)->EndAtUnload(); }, this))
{
    Run();
}

FileLogger::~FileLogger()
{
    m_stopEvent->Signal();
    Wait();
}

// Nobody destroys a logger that another thread holds when the process ends. Others may log on to
// it, so it gets no more time than an orderly end takes.
void FileLogger::EndAtUnload()
{
    constexpr std::chrono::seconds longestEnd(2);

    if (!IsRunning())
        return;
    m_stopEvent->Signal();
    const auto deadline = std::chrono::steady_clock::now() + longestEnd;
    while (IsRunning() && std::chrono::steady_clock::now() < deadline)
        Sleep(c_openRetryMs);
}

void FileLogger::Write(const TString<wchar_t>& text)
try {
    // Of pieces that wait together the first has signalled.
    if (m_queue->Put(text))
        m_dataEvent->Signal();
} catch (const std::bad_alloc&) {
    // A text that finds no memory is lost: who logs has nobody to tell.
}

TString<wchar_t> FileLogger::GetPath(unsigned int timeoutMs) const
{
    const unsigned int beginTicks = Base::GetTickCount();
    TString<wchar_t> path = CurrentPath();
    while (path.empty() && Base::GetTickCount() - beginTicks < timeoutMs) {
        Sleep(c_openRetryMs);
        path = CurrentPath();
    }
    return path;
}

TString<wchar_t> FileLogger::CurrentPath() const
{
    return Base::ResultOr({}, [this] {
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
        // Memory is kept from batch to batch as long as text comes.
        if (!hadText)
            batch.Release();
        WrapAround();
    }
    m_file->Close();
    return 0;
}

// False when the logger was stopped before a file could be opened.
bool FileLogger::OpenFile()
{
    bool isOpen = OpenOwnName();
    // No wait here: when the logger is stopped while another process has the file, the queue is
    // written still.
    if (!isOpen && m_file->IsInUse())
        isOpen = OpenFallback();
    while (!isOpen) {
        if (m_stopEvent->Wait(c_openRetryMs))
            return false;
        isOpen = OpenFallback();
    }
    return true;
}

// A program that was started again gets its name back when its predecessor ends in time.
bool FileLogger::OpenOwnName()
{
    using Clock = std::chrono::steady_clock;

    const Clock::time_point end = Clock::now() + c_inUseWait;
    bool isOpen = Open(L"");
    while (!isOpen && m_file->IsInUse() && Clock::now() < end && !m_stopEvent->Wait(c_openRetryMs))
        isOpen = Open(L"");
    return isOpen;
}

bool FileLogger::OpenFallback()
{
    return Open(c_strTickSeparator + StringConvert::UStringFromUint32(Base::GetTickCount()));
}

// Out of memory is a failure like any other: the next attempt may find some.
bool FileLogger::Open(const TString<wchar_t>& suffix)
{
    return Base::ResultOr(false, [this, &suffix] {
        TString<wchar_t> path = m_directory + m_name + suffix + c_strLogExtension;
        if (!m_file->Open(Base::EncodeUtf8(path)))
            return false;
        const MutexLocker locker(m_pathLock, MutexInternal::Infinite);
        m_path.swap(path);
        return true;
    });
}

// Waits 500 ms. False when the logger was stopped and everything that came before is in the file:
// the last look finds what was written between the end of the wait and the stop.
//
// `LogMillion`: text seldom comes alone, and after some the event's own steps of 200 ms would have
// the next text wait for a quarter of the time that a million lines take.
bool FileLogger::WaitForData(bool isBusy)
{
    unsigned int waitMs = c_dataWaitMs;
    for (; isBusy && waitMs > c_dataWaitMs - c_busyWaitMs; waitMs -= c_busyStepMs) {
        if (m_dataEvent->Wait(c_busyStepMs))
            return true;
    }
    return m_dataEvent->Wait(waitMs) || !m_stopEvent->Wait(0) || m_dataEvent->Wait(0);
}

// Empties the queue, text that arrives meanwhile included; false when there was none. The lock is
// never held while the disk is written.
bool FileLogger::Drain(LogPieceQueue& batch)
{
    for (bool hadText = false;; hadText = true) {
        batch.Clear();
        m_queue->Take(batch);
        if (batch.IsEmpty())
            return hadText;
        WriteBatch(batch);
    }
}

void FileLogger::WriteBatch(const LogPieceQueue& batch)
{
    LogPieceBlock block(PageSize());
    block.Begin(m_file->FindPosition());
    batch.ForEach([this, &block](auto piece) {
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
