#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/threading/FrameworkHold.h"

#include <wx/thread.h>

#include <atomic>
#include <memory>

namespace Toolkit {

class ThreadControl;

/// A worker thread: derive from it, implement `DoWork()` and call `Run()`.
///
/// The destructor asks the thread to end and waits until it has. By then the derived part of the
/// object is gone, so a derived class that may be destroyed while its thread runs ends the thread
/// in its own destructor: it makes `DoWork()` return and calls `Wait()`.
///
/// wxWidgets stays started as long as the object lives, as described at `FrameworkHold`. An object
/// is operated by one thread at a time.
///
/// A forked child has the objects of its parent without their threads. There no thread of the
/// parent runs, nothing waits for one, and the objects are destroyed without a sign.
class TOOLKIT_API Thread : private FrameworkHold, public wxThread {
public:
    /// The identifier that means "no thread".
    static const unsigned long UndefinedThread;

    /// Creates the system thread, which waits for `Run()`.
    Thread();

    /// Asks a running thread to end and waits until it has. On the thread itself, as when it calls
    /// exit(), it returns at once. Never fails for lack of memory: to end a thread that was never
    /// started, it waits until there is some.
    ~Thread() override;

    /// Starts the thread; false when it was started before or could not be created, and when there
    /// is no memory to start it: then it can be started later.
    bool Run();

    /// Each is false when the thread is in no state for it, and when the thread calls it for
    /// itself. A thread pauses when it next calls `TestDestroy()`.
    bool Pause();
    bool Resume();

    /// Ends the thread by force, which leaks what it held. `wxTHREAD_NOT_RUNNING` when it does not
    /// run, `wxTHREAD_MISC_ERROR` when it calls this for itself.
    wxThreadError Kill();

    /// Sends the calling thread to sleep.
    static void Sleep(unsigned int ms);

    /// Whether the thread was started and has not ended.
    bool IsRunning() const;

    /// Waits until a running thread ends and returns what `DoWork()` returned; a null code at once
    /// when the thread does not run, and when it would wait for itself.
    ExitCode Wait();

    bool IsPaused() const;
    unsigned long GetId() const;
    static unsigned long GetCurrentId();

    /// Whether the caller is the application's main thread: the one that runs main(), or, in a
    /// program that runs an application object of its own, the one that wxWidgets takes for it.
    static bool IsMainThread();

    /// Whether the thread has been asked to end; called by `DoWork()` from time to time. While the
    /// thread is paused, the call waits.
    bool TestDestroy() override;

protected:
    /// What the thread calls first. Runs `DoWork()`, with the messages of wxWidgets going to the
    /// installed `WxLogForwarder` at once. A derived class may call it on any thread, which then
    /// does the work.
    ExitCode Entry() override;

    /// Each asks the thread to end, and wakes it when it is paused. Called by `wxThread::Delete()`
    /// and `wxThread::Kill()`; a derived class that overrides one calls it.
    void OnDelete() override;
    void OnKill() override;

    /// The work of the derived class, on the new thread. Its result becomes the exit code.
    virtual int DoWork() = 0;

private:
    // Dropped: never to work any more. Failed: the system had no thread to give.
    enum class State { New, Started, Dropped, Failed };

    bool Start();
    bool IsCaller() const;
    void End();

    std::unique_ptr<ThreadControl> m_control;
    std::atomic<State> m_state{State::New};
};

} // namespace Toolkit
