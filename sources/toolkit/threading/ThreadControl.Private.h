#pragma once

#include "toolkit/framework/ThreadRemains.h"

#include <atomic>
#include <memory>
#include <semaphore>
#include <sys/types.h>
#include <utility>

namespace Toolkit {

/// State of a `Thread` besides its `wxThread`: whether it has reached its entry point, the request
/// to end, the semaphore that ends a pause, and the process to which it belongs.
///
/// The destructor does not wait for other threads. That of a condition variable would: in a forked
/// child it waits for threads that the child does not have.
class ThreadControl {
public:
    ThreadControl();

    ThreadControl(const ThreadControl&) = delete;
    ThreadControl& operator=(const ThreadControl&) = delete;

    /// False in a forked child, which has the objects of its parent without their threads.
    bool IsOfThisProcess() const;

    /// Release pairs with the acquire of AwaitEntry(): the waiting thread sees what this thread did
    /// before.
    void SetEntered() { m_isEntered.store(true, std::memory_order_release); }

    /// Waits until `SetEntered()` was called, with a time limit: an override of `Thread::Entry()`
    /// may not call it.
    void AwaitEntry() const;

    /// Asks the thread to end and wakes it.
    void Cancel();

    /// Acquire pairs with the release of Cancel(): the thread sees what was done before the
    /// request.
    bool IsCancelled() const { return m_isCancelled.load(std::memory_order_acquire); }

    void Wake() { m_wakes.release(); }

    /// Waits for the next `Wake()`, with a time limit: a pause can end without a `Wake()`.
    void AwaitWake();

    /// Room for the thread when it is discarded, which must not need memory.
    std::unique_ptr<Framework::ThreadRemains> TakeRemains() { return std::move(m_remains); }

private:
    const pid_t m_process;
    std::unique_ptr<Framework::ThreadRemains> m_remains;
    std::atomic<bool> m_isEntered{false};
    std::atomic<bool> m_isCancelled{false};
    std::counting_semaphore<> m_wakes{0};
};

} // namespace Toolkit
