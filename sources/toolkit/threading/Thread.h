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
/// object is destroyed: a thread that has not called `DoWork()` yet never does. A derived class
/// that may be destroyed while its thread runs must end the thread in its own destructor: make
/// `DoWork()` return and call `Wait()`.
///
/// wxWidgets stays started while the object exists; `FrameworkHold` describes how. One thread at a
/// time may operate an object.
///
/// A forked child has its parent's objects without their threads. There no operation waits for a
/// thread, and the objects are destroyed silently.
class TOOLKIT_API Thread : private FrameworkHold, public wxThread {
public:
    /// The identifier that means "no thread".
    static const unsigned long UndefinedThread;

    /// Creates the system thread, which waits for `Run()`. Throws `std::bad_alloc` when out of
    /// memory.
    Thread();

    /// Asks a running thread to end and waits until it has. On the thread itself, as when it calls
    /// exit(), it returns at once. To end a thread that was never started it needs memory: it
    /// retries for 200 ms, then leaks the thread. For that wxWidgets needs memory too, so the
    /// destructor waits while there is none at all.
    ~Thread() override;

    /// Starts the thread. False when it was started before, when it could not be created, and when
    /// out of memory; in the last case a later call may succeed.
    bool Run();

    /// Both are false when the state of the thread does not allow it, and on the thread itself. A
    /// thread pauses at its next call of `TestDestroy()`.
    bool Pause();
    bool Resume();

    /// Ends the thread by force, which leaks what it owned. `wxTHREAD_NOT_RUNNING` when it does not
    /// run, `wxTHREAD_MISC_ERROR` on the thread itself.
    ///
    /// The thread ends at its next cancellation point, see pthreads(7), by an unwinding of its
    /// stack. `DoWork()` must not stop that unwinding with a catch-all, nor reach a cancellation
    /// point in a function that is noexcept, such as a destructor: the process would end. The call
    /// does not wait for the unwinding; a `Wait()` after it and the destructor do.
    wxThreadError Kill();

    /// Suspends the calling thread for `ms` milliseconds.
    static void Sleep(unsigned int ms);

    /// Whether the thread was started and has not ended.
    bool IsRunning() const;

    /// Waits until a running thread ends and returns the result of `DoWork()`, or `(ExitCode)-1` if
    /// the thread was killed. Returns a null code at once when the thread does not run, and on the
    /// thread itself. A thread that has just ended may then still destroy its thread-local objects;
    /// the destructor waits for them.
    ExitCode Wait();

    bool IsPaused() const;
    unsigned long GetId() const;
    static unsigned long GetCurrentId();

    /// Whether the caller is the application's main thread: the one that runs main() or, in a
    /// program that runs its own application object, the one that wxWidgets treats as such.
    static bool IsMainThread();

    /// Whether the thread has been asked to end; `DoWork()` calls it from time to time. While the
    /// thread is paused, the call waits.
    bool TestDestroy() override;

protected:
    /// The thread's entry point. Runs `DoWork()`; messages of wxWidgets meanwhile go to the
    /// installed `WxLogForwarder` at once. A derived class may call it on any thread, which then
    /// does the work.
    ExitCode Entry() override;

    /// Both ask the thread to end, and wake it if it is paused. `wxThread::Delete()` and
    /// `wxThread::Kill()` call them. An override must call the overridden function.
    void OnDelete() override;
    void OnKill() override;

    /// The work of the derived class, on the new thread. Its result becomes the exit code.
    virtual int DoWork() = 0;

private:
    // Working: calls DoWork(). Dropped: will never call it. Failed: the system could not create the
    // thread.
    enum class State { New, Started, Working, Dropped, Failed };

    bool Start();
    bool IsCaller() const;
    void End();

    std::unique_ptr<ThreadControl> m_control;
    std::atomic<State> m_state{State::New};
};

} // namespace Toolkit
