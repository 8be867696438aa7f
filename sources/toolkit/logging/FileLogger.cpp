#include "toolkit/logging/FileLogger.h"

#include "toolkit/base/TickCount.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/encoding/StringConvert.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/logging/LogFile.Private.h"
#include "toolkit/logging/LogPieceBlock.Private.h"
#include "toolkit/logging/LogPieceQueue.Private.h"

#include <new>
#include <unistd.h>

namespace Toolkit {
namespace {

constexpr unsigned int c_dataWaitMs = 500;
constexpr unsigned int c_openRetryMs = 10;

std::size_t PageSize()
{
    static const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return pageSize;
}

} // namespace

FileLogger::FileLogger(LogSeverity threshold, const TString<wchar_t>& name,
                       unsigned int sizeLimitBytes)
    : ILogger(threshold), m_queue(std::make_unique<LogPieceQueue>()), m_queueLock(false),
      m_dataEvent(new EventObject(true, false)), m_stopEvent(new EventObject(false, false)),
      m_name(name.empty() ? PathManager::GetInstance()->GetApplicationName() : name),
      m_file(std::make_unique<LogFile>()), m_sizeLimitBytes(sizeLimitBytes),
      m_directory(PathManager::GetInstance()->GetTempDir() +
                  PathManager::GetInstance()->GetPathSeparator())
{
    Run();
}

FileLogger::~FileLogger()
{
    m_stopEvent->Signal();
    Wait();
}

void FileLogger::Write(const TString<wchar_t>& text)
try {
    bool wasEmpty = false;
    {
        const MutexLocker locker(m_queueLock, MutexInternal::Infinite);
        wasEmpty = m_queue->IsEmpty();
        m_queue->Push(text);
    }
    // Of pieces that wait together the first has signalled.
    if (wasEmpty)
        m_dataEvent->Signal();
} catch (const std::bad_alloc&) {
    // A text that finds no memory is lost: who logs has nobody to tell.
}

TString<wchar_t> FileLogger::GetPath(unsigned int timeoutMs) const
{
    const unsigned int beginTicks = Base::GetTickCount();
    while (true) {
        {
            const MutexLocker locker(m_queueLock, MutexInternal::Infinite);
            if (!m_path.empty())
                return m_path;
        }
        if (Base::GetTickCount() - beginTicks >= timeoutMs)
            return {};
        Sleep(c_openRetryMs);
    }
}

int FileLogger::DoWork()
{
    if (!OpenFile())
        return 1;
    LogPieceQueue batch;
    while (WaitForData()) {
        // Memory is kept from batch to batch as long as text comes.
        if (!Drain(batch))
            batch.Release();
        WrapAround();
    }
    m_file->Close();
    return 0;
}

TString<wchar_t> FileLogger::MakePath(const TString<wchar_t>& suffix) const
{
    return m_directory + m_name + suffix + c_strLogExtension;
}

// False when the logger was stopped before a file could be opened.
bool FileLogger::OpenFile()
{
    bool isOpen = Open(TString<wchar_t>::Empty());
    while (!isOpen) {
        if (m_stopEvent->Wait(c_openRetryMs))
            return false;
        isOpen = Open(c_strTickSeparator + StringConvert::UStringFromUint32(Base::GetTickCount()));
    }
    return true;
}

bool FileLogger::Open(const TString<wchar_t>& suffix)
{
    TString<wchar_t> path = MakePath(suffix);
    if (!m_file->Open(Base::EncodeUtf8(path)))
        return false;
    const MutexLocker locker(m_queueLock, MutexInternal::Infinite);
    m_path.swap(path);
    return true;
}

// False when the logger was stopped and everything that came before is in the file. The last look
// finds what was written between the end of the wait and the stop.
bool FileLogger::WaitForData()
{
    return m_dataEvent->Wait(c_dataWaitMs) || !m_stopEvent->Wait(0) || m_dataEvent->Wait(0);
}

// Empties the queue, text that arrives meanwhile included; false when there was none. The lock is
// never held while the disk is written.
bool FileLogger::Drain(LogPieceQueue& batch)
{
    for (bool hadText = false;; hadText = true) {
        batch.Clear();
        {
            const MutexLocker locker(m_queueLock, MutexInternal::Infinite);
            batch.Swap(*m_queue);
        }
        if (batch.IsEmpty())
            return hadText;
        WriteBatch(batch);
    }
}

void FileLogger::WriteBatch(const LogPieceQueue& batch)
{
    LogPieceBlock block(PageSize());
    block.Begin(m_file->GetOffset());
    batch.ForEach([this, &block](std::wstring_view piece) {
        if (block.Append(piece))
            return;
        WriteBlock(block);
        block.Begin(m_file->GetOffset());
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
    if (m_file->GetOffset() >= static_cast<long long>(m_sizeLimitBytes))
        m_file->Rewind();
}

} // namespace Toolkit
