#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/smart_ptr.h"
#include "toolkit/threading/Mutex.h"
#include "toolkit/threading/ThreadSafety.h"

#include <algorithm>
#include <list>
#include <new>

namespace Toolkit {

/// A list of listeners with the interface `T`, for classes that report events.
///
/// Listeners are called in the order in which they were added, under the notifier's recursive lock.
/// During its call, a listener may add and remove listeners, including itself; an added one is
/// called by the same Notify(). Other threads wait until all listeners have been called. Any thread
/// may call the operations.
template <typename T>
class TOOLKIT_API EventNotifier {
public:
    /// Throws `std::bad_alloc` when out of memory.
    EventNotifier() : m_lock(false), m_runningPasses(0) {}
    virtual ~EventNotifier() = default;

    EventNotifier(const EventNotifier&) = delete;
    EventNotifier& operator=(const EventNotifier&) = delete;

    /// Adds `listener` at the end and shares its ownership. A listener that is added twice is
    /// called twice. Ignores an empty pointer. When out of memory, throws `std::bad_alloc` and adds
    /// nothing.
    void AddListener(const smart_ptr<T>& listener)
    {
        const MutexLocker locker(m_lock, MutexInternal::Infinite);
        if (listener.IsValid())
            m_listeners.push_back(listener);
    }

    /// Removes the first entry with the same object; false if there is none. An entry that is
    /// removed during a Notify() is not called any more, and its listener lives until the outermost
    /// Notify() ends. That needs memory; when out of memory, returns false and keeps the listener.
    bool RemoveListener(const smart_ptr<T>& listener)
    {
        const MutexLocker locker(m_lock, MutexInternal::Infinite);
        const auto found =
            std::find_if(m_listeners.begin(), m_listeners.end(), [&](const smart_ptr<T>& entry) {
                return entry.IsValid() && entry.Get() == listener.Get();
            });
        if (found == m_listeners.end())
            return false;
        if (m_runningPasses > 0) {
            try {
                m_removed.push_back(*found);
            } catch (const std::bad_alloc&) {
                return false;
            }
            *found = smart_ptr<T>::Empty();
        } else {
            m_listeners.erase(found);
        }
        return true;
    }

protected:
    /// Calls `operation` with each listener. If it throws, the listeners after that one are not
    /// called, and the exception reaches the caller.
    template <typename Operation>
    void Notify(Operation operation)
    {
        const MutexLocker locker(m_lock, MutexInternal::Infinite);
        const Pass pass(*this);
        for (const smart_ptr<T>& listener : m_listeners) {
            if (T* const object = listener.Get())
                operation(*object);
        }
    }

private:
    using Listeners = std::list<smart_ptr<T>>;

    // One run of Notify(). Removing a listener during a pass only empties its entry; the outermost
    // pass erases empty entries.
    class Pass {
    public:
        explicit Pass(EventNotifier& notifier) TOOLKIT_REQUIRES(notifier.m_lock)
            : m_notifier(notifier)
        {
            ++notifier.m_runningPasses;
        }
        // Not checked: Clang does not see that the locker in Notify() still holds the lock.
        ~Pass() TOOLKIT_NO_THREAD_SAFETY_ANALYSIS
        {
            if (--m_notifier.m_runningPasses > 0 || m_notifier.m_removed.empty())
                return;
            m_notifier.m_listeners.remove_if(
                [](const smart_ptr<T>& entry) { return !entry.IsValid(); });
            m_notifier.m_removed.clear();
        }

        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;

    private:
        EventNotifier& m_notifier;
    };

    Listeners m_listeners TOOLKIT_GUARDED_BY(m_lock); // no entry is empty outside of a pass
    Mutex m_lock;
    Listeners m_removed TOOLKIT_GUARDED_BY(m_lock);
    int m_runningPasses TOOLKIT_GUARDED_BY(m_lock);
};

} // namespace Toolkit
