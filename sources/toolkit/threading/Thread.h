#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/threading/FrameworkHold.h"

#include <wx/thread.h>

#include <atomic>

namespace Toolkit {

/// A worker thread: derive from it, implement `DoWork()` and call `Run()`.
///
/// The destructor waits for the thread to end. By then the derived part of the object is gone, so a
/// derived class that may be destroyed while its thread runs calls `Wait()` in its own destructor.
///
/// The framework is kept running as long as the object lives, as `FrameworkHold` tells. An object
/// is operated by one thread at a time.
class TOOLKIT_API Thread : private FrameworkHold, public wxThread {
public:
    /// The identifier that means "no thread".
    static const unsigned long UndefinedThread;

    /// Creates the system thread, which waits for `Run()`.
    Thread();
    ~Thread() override;

    /// Starts the thread; false when it was started before or could not be created.
    bool Run();

    /// Each is false when the thread is in no state for it. A thread pauses when it next calls
    /// `TestDestroy()`.
    bool Pause();
    bool Resume();

    /// Ends the thread by force, which leaks what it held. `wxTHREAD_NOT_RUNNING` when it does not
    /// run.
    wxThreadError Kill();

    /// Sends the calling thread to sleep.
    static void Sleep(unsigned int ms);

    /// Whether the thread was started and has not ended.
    bool IsRunning() const;

    /// Waits until a running thread ends and returns what `DoWork()` returned; a null code at once
    /// when the thread does not run.
    ExitCode Wait();

    bool IsPaused() const;
    unsigned long GetId() const;
    static unsigned long GetCurrentId();
    static bool IsMainThread();

protected:
    /// What the thread calls first. Runs `DoWork()` with the framework's messages going to the
    /// installed `WxLogForwarder` at once.
    ExitCode Entry() override;

    /// The work of the derived class, on the new thread. Its result becomes the exit code.
    virtual int DoWork() = 0;

private:
    // Failed: the system had no thread to give.
    enum class State { New, Started, Dropped, Failed };

    std::atomic<State> m_state{State::New};
};

} // namespace Toolkit
