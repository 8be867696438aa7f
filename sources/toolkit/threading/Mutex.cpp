#include "toolkit/threading/Mutex.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/framework/Silence.h"
#include "toolkit/threading/CountedMutex.Private.h"

#include <memory>
#include <new>

namespace Toolkit {
namespace {

constexpr unsigned int c_pollIntervalMs = 10;

bool Poll(CountedMutex& mutex, unsigned int timeoutMs)
{
    wxMutexError result = mutex.TryAcquire();
    if (timeoutMs < c_pollIntervalMs)
        return result == wxMUTEX_NO_ERROR;

    const unsigned int rounds = timeoutMs / c_pollIntervalMs;
    for (unsigned int round = 0; result == wxMUTEX_BUSY; ++round) {
        wxThread::Sleep(c_pollIntervalMs);
        if (round == rounds)
            break;
        result = mutex.TryAcquire();
    }
    return result == wxMUTEX_NO_ERROR;
}

} // namespace

// Allocates here, not in Lock(), which would fail when out of memory: many callers ignore its
// result.
MutexInternal::MutexInternal(bool initiallyLocked) : m_mutex(new CountedMutex())
{
    // Relaxed, as in the destructor: no other thread has the object yet, or still has it.
    if (initiallyLocked)
        m_mutex.load(std::memory_order_relaxed)->Acquire();
}

MutexInternal::~MutexInternal()
{
    std::unique_ptr<CountedMutex> mutex(m_mutex.load(std::memory_order_relaxed));
    if (!mutex || (mutex->ReleaseAll() && mutex->IsCertainlyFree()))
        return;
    // ~wxMutex() would log that the mutex is destroyed while held.
    const Framework::Silence silence;
    mutex.reset();
}

// Returns null when out of memory.
CountedMutex* MutexInternal::CreateOnFirstUse()
{
    return Base::TryOr(nullptr, [this]() -> CountedMutex* {
        auto created = std::make_unique<CountedMutex>();
        CountedMutex* existing = nullptr;
        if (m_mutex.compare_exchange_strong(existing, created.get(), std::memory_order_release,
                                            std::memory_order_acquire))
            return created.release();
        return existing;
    });
}

bool MutexInternal::Lock(unsigned int timeoutMs)
{
    // Acquire pairs with the release of the exchange above: a thread that finds a mutex, here or in
    // CreateOnFirstUse(), finds it constructed.
    CountedMutex* mutex = m_mutex.load(std::memory_order_acquire);
    if (!mutex)
        mutex = CreateOnFirstUse();
    if (!mutex)
        return false;
    if (timeoutMs == Infinite)
        return mutex->Acquire() == wxMUTEX_NO_ERROR;
    return Poll(*mutex, timeoutMs);
}

bool MutexInternal::Unlock()
{
    // Acquire, as in Lock(): a thread may try to unlock a mutex that it has never locked.
    CountedMutex* const mutex = m_mutex.load(std::memory_order_acquire);
    return mutex && mutex->Release();
}

Mutex::Mutex(bool initiallyLocked) : MutexInternal(initiallyLocked) {}

Mutex::~Mutex() = default;

} // namespace Toolkit
