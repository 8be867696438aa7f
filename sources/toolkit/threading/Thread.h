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
/// wxWidgets stays started while the object exists; see `FrameworkHold`. Only one thread at a time
/// may control an object; the thread itself calls `TestDestroy()`.
///
/// A forked child has copies of its parent's objects, without their threads. In the child, these
/// objects cannot be started and do not count as running, no operation waits for a thread, and
/// destroying the objects prints nothing.
class TOOLKIT_API Thread : private FrameworkHold, public wxThread {
public:
    /// The identifier that means "no thread".
    static const unsigned long UndefinedThread;

    /// Creates the system thread, which waits for `Run()`. Throws `std::bad_alloc` when out of
    /// memory.
    Thread();

    /// Asks a running thread to end and waits until it has. Does not wait if called on the thread
    /// itself, for example from exit().
    ///
    /// Ending a thread that was never started takes memory: when out of memory, the destructor
    /// retries for 200 ms, and then leaks the thread. Leaking it also takes a little memory, for
    /// which the destructor waits without limit. A destructor that leaks the thread, or runs on
    /// that thread, never releases its `FrameworkHold`.
    ~Thread() override;

    /// Starts the thread. False if it was started before, if the system could not create it, or
    /// when out of memory; in the last case a later call may succeed.
    bool Run();

    /// Pause() pauses the thread at its next call of `TestDestroy()`; Resume() lets it continue.
    /// False if the state of the thread does not allow that, or if called on the thread itself.
    bool Pause();
    bool Resume();

    /// Ends the thread by force, which leaks whatever no destructor on its stack releases. Returns
    /// `wxTHREAD_NOT_RUNNING` if the thread does not run, and `wxTHREAD_MISC_ERROR` if called on
    /// the thread itself.
    ///
    /// The thread ends at its next cancellation point, see pthreads(7), and its stack is unwound.
    /// `DoWork()` must not stop the unwinding with a catch-all, nor reach a cancellation point in a
    /// noexcept function, such as a destructor: the process would end. Kill() waits up to 1 second
    /// for the thread to reach Entry(), but not for the unwinding; a later `Wait()` and the
    /// destructor do.
    wxThreadError Kill();

    /// Suspends the calling thread for `ms` milliseconds.
    static void Sleep(unsigned int ms);

    /// Whether the thread was started and has not ended. Unlike `wxThread::IsRunning()`, also true
    /// while it is paused.
    bool IsRunning() const;

    /// Waits until a running thread ends and returns the result of `DoWork()`, or `(ExitCode)-1` if
    /// the thread was killed. Returns a null code without waiting if the thread does not run, even
    /// if it has run before, or if called on the thread itself. A thread that no longer runs may
    /// still be destroying its thread-local objects; the destructor waits for that.
    ExitCode Wait();

    bool IsPaused() const;
    unsigned long GetId() const;
    static unsigned long GetCurrentId();

    /// Whether the caller is the application's main thread: the one that runs main() or, in a
    /// program that runs its own application object, the one that wxWidgets treats as the main one.
    static bool IsMainThread();

    /// Returns whether the thread has been asked to end. `DoWork()` should call it from time to
    /// time. Waits while the thread is paused; called on another thread, never waits.
    bool TestDestroy() override;

protected:
    /// The thread's entry point: runs `DoWork()`. Until that returns, wxWidgets messages of the
    /// thread go to the installed `WxLogForwarder` immediately. If a derived class calls Entry() on
    /// another thread, it only runs `DoWork()` there.
    ExitCode Entry() override;

    /// `wxThread::Delete()` and `wxThread::Kill()` call these. Both ask the thread to end; a paused
    /// thread then notices sooner that it is resumed. OnKill() also waits up to 1 second for the
    /// thread to reach Entry(). An override must call the base version.
    void OnDelete() override;
    void OnKill() override;

    /// Does the work, on the new thread. The result becomes the exit code.
    virtual int DoWork() = 0;

private:
    // Working: DoWork() has been called. Dropped: it never will be. Failed: the system could not
    // create the thread.
    enum class State { New, Started, Working, Dropped, Failed };

    bool Start();
    bool IsCaller() const;
    void End();

    std::unique_ptr<ThreadControl> m_control;
    std::atomic<State> m_state{State::New};
};

} // namespace Toolkit
