#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/smart_ptr.h"
#include "toolkit/threading/Mutex.h"
#include "toolkit/threading/ThreadSafety.h"

#include <algorithm>
#include <list>
#include <new>

namespace Toolkit {

/// Base of classes that report events to listeners with the interface `T`.
///
/// Listeners are called in the order in which they were added, under the notifier's recursive lock.
/// During its call, a listener may add and remove listeners, including itself; a listener added
/// then is called by the same Notify(). Any thread may call the operations; they wait until a
/// Notify() on another thread has called all listeners.
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

    /// Removes the first entry for the object of `listener`; false if there is none. A listener
    /// removed during Notify() is no longer called, and is kept alive until the outermost Notify()
    /// ends. Removing then needs memory: when out of memory, returns false and keeps the entry.
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
    /// Calls `operation` with each listener. If `operation` throws, skips the remaining listeners
    /// and passes the exception to the caller.
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
    // pass erases the empty entries when it ends.
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
            // The destructor of a listener may call Notify(), whose pass then finds an empty list.
            Listeners removed;
            removed.swap(m_notifier.m_removed);
        }

        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;

    private:
        EventNotifier& m_notifier;
    };

    Listeners m_listeners TOOLKIT_GUARDED_BY(m_lock); // no entry is empty outside a pass
    Mutex m_lock;
    Listeners m_removed TOOLKIT_GUARDED_BY(m_lock); // kept alive until the outermost pass ends
    int m_runningPasses TOOLKIT_GUARDED_BY(m_lock);
};

} // namespace Toolkit
