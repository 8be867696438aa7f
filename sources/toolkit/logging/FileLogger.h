#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"
#include "toolkit/logging/ILogger.h"
#include "toolkit/threading/EventObject.h"
#include "toolkit/threading/Mutex.h"
#include "toolkit/threading/Thread.h"
#include "toolkit/threading/ThreadSafety.h"

#include <memory>

namespace Toolkit {

namespace Base {
class UnloadTask;
}
class LogFile;
class LogInbox;
class LogPieceBlock;
class LogPieceQueue;

/// Writes log text to a file in the temporary directory, on its own thread: `Write` only puts
/// the text into a queue.
///
/// The file is named after the logger, with the extension ".qvlog", and only its owner can read it.
/// The process holds a lock on it. While another process holds the lock, the logger waits up to 2 s
/// and keeps queueing text. If the file cannot be used, for example because it is still locked,
/// belongs to another user, or is a link or a directory, the logger adds a dash and a tick count to
/// the name. It tries a new tick count every 10 ms until it can open a file. Two loggers with the
/// same name in one process overwrite each other's text.
///
/// When the file reaches its size limit, the logger continues at its beginning. docs/formats/log.md
/// describes that, and what a killed process leaves in the file.
///
/// A logger may be constructed before the library is started; the path of its file is the same. A
/// logger that still exists when the library is unloaded writes its queue then, for at most 2 s.
class TOOLKIT_API FileLogger : public ILogger, public Thread {
public:
    /// "w": creates the file or empties it. Kept for programs; the library does not use it.
    static const TString<wchar_t> c_strOpenMode;
    /// The extension of log files: ".qvlog".
    static const TString<wchar_t> c_strLogExtension;
    /// The separator between name and tick count: "-".
    static const TString<wchar_t> c_strTickSeparator;

    /// Writes text that is at least as severe as `threshold` to the file `name`, given without
    /// directory and extension; an empty `name` means the application's name. The constructor does
    /// not wait: the writer thread opens the file. If the system cannot start that thread, nothing
    /// is ever written. Throws `std::bad_alloc` when out of memory.
    FileLogger(LogSeverity threshold, const TString<wchar_t>& name, unsigned int sizeLimitBytes);

    /// Writes the queued text, and closes the file when no more has arrived for 500 ms. If the file
    /// cannot be used and none with a tick count is open yet, drops the queue without waiting. Only
    /// a logger that is still waiting for another process stops waiting and writes its queue, to a
    /// file with a tick count in its name.
    ~FileLogger() override;

    /// Queues `text`. Any thread may call it. The queue grows without limit while no file is open;
    /// text that does not fit into memory is dropped. In a forked child, a logger of the parent
    /// drops all text.
    void Write(const TString<wchar_t>& text) override;

    /// Returns the path of the open file, whose name may contain a tick count. Waits up to
    /// `timeoutMs` milliseconds, in steps of 10, for the writer thread to open a file. Empty if
    /// none is open by then, or when out of memory. Any thread may call it.
    TString<wchar_t> GetPath(unsigned int timeoutMs) const;

protected:
    /// Runs on the writer thread. Returns 1 if stopped before a file was opened, otherwise 0.
    int DoWork() override;

private:
    TString<wchar_t> CurrentPath() const;
    bool OpenFile();
    bool OpenOwnName();
    bool OpenFallback();
    bool Open(const TString<wchar_t>& suffix);
    bool WaitForData(bool isBusy);
    bool Drain(LogPieceQueue& batch);
    void WriteBatch(const LogPieceQueue& batch);
    void WriteBlock(const LogPieceBlock& block);
    void WrapAround();
    void EndAtUnload();

    std::unique_ptr<LogInbox> m_queue;
    mutable Mutex m_pathLock;
    smart_ptr<EventObject> m_dataEvent;
    smart_ptr<EventObject> m_stopEvent;
    TString<wchar_t> m_name;
    std::unique_ptr<LogFile> m_file; // used only by the writer thread
    unsigned int m_sizeLimitBytes;
    TString<wchar_t> m_directory;                           // with a trailing separator
    TString<wchar_t> m_path TOOLKIT_GUARDED_BY(m_pathLock); // empty until a file is open
    std::unique_ptr<Base::UnloadTask> m_atUnload;
};

} // namespace Toolkit
