#pragma once

#include "toolkit/framework/ThreadRemains.h"

#include <atomic>
#include <memory>
#include <semaphore>
#include <sys/types.h>
#include <utility>

namespace Toolkit {

/// The state that `Thread` adds to `wxThread`: whether the thread has reached its entry point, the
/// request to end, the semaphore that ends a pause, and the process to which the thread belongs.
///
/// The destructor does not wait for other threads. The destructor of a condition variable would: in
/// a forked child, it waits for threads that the child does not have.
class ThreadControl {
public:
    ThreadControl();

    ThreadControl(const ThreadControl&) = delete;
    ThreadControl& operator=(const ThreadControl&) = delete;

    /// False in a forked child, which has copies of its parent's objects, but not their threads.
    bool BelongsToThisProcess() const;

    /// Release pairs with the acquire in AwaitEntry(): the waiting thread sees what this thread did
    /// before.
    void SetEntered() { m_hasEntered.store(true, std::memory_order_release); }

    /// Waits until SetEntered() has been called, but at most 1 second: an override of
    /// `Thread::Entry()` might not call the base version.
    void AwaitEntry() const;

    /// Asks the thread to end and wakes it.
    void Cancel();

    /// Acquire pairs with the release in Cancel(): the thread sees what was done before the
    /// request.
    bool IsCancelled() const { return m_isCancelled.load(std::memory_order_acquire); }

    void Wake() { m_wakes.release(); }

    /// Waits for the next Wake(), but at most 200 ms, or 1 ms after Cancel(): a pause can also end
    /// without a Wake().
    void AwaitWake();

    /// Returns the memory for Framework::DiscardThread(). It was allocated in advance, because a
    /// destructor must not need memory. Call it once.
    std::unique_ptr<Framework::ThreadRemains> TakeRemains() { return std::move(m_remains); }

private:
    const pid_t m_processId;
    std::unique_ptr<Framework::ThreadRemains> m_remains;
    std::atomic<bool> m_hasEntered{false};
    std::atomic<bool> m_isCancelled{false};
    std::counting_semaphore<> m_wakes{0};
};

} // namespace Toolkit
