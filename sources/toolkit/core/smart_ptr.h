#pragma once

#include "toolkit/core/Assert.h"
#include "toolkit/core/Export.h"
#include "toolkit/threading/Mutex.h"

#include <cstdint>

namespace Toolkit {

/// Releases the object of a `smart_ptr` with delete.
class TOOLKIT_API smart_ptr_policy {
public:
    template <typename T>
    void Release(T* object)
    {
        delete object;
    }
};

/// Releases the array of a `smart_ptr` with delete[].
class TOOLKIT_API smart_ptr_array_policy {
public:
    template <typename T>
    void Release(T* array)
    {
        delete[] array;
    }
};

/// What a count block tells when its object has been released. The library sets none.
class TOOLKIT_API IReleaseListener {
public:
    virtual ~IReleaseListener();

    /// Called under the block's lock, after the object was released.
    virtual void OnReleased() = 0;
};

/// The count that all copies of one `smart_ptr` share.
template <typename Policy>
class TOOLKIT_API smart_ptr_inner_data {
public:
    smart_ptr_inner_data() : count(1), lock(false), releaseListener(nullptr) {}
    ~smart_ptr_inner_data() { delete releaseListener; }

    smart_ptr_inner_data(const smart_ptr_inner_data&) = delete;
    smart_ptr_inner_data& operator=(const smart_ptr_inner_data&) = delete;

    std::int32_t count; // guarded by lock
    MutexInternal lock;
    Policy policy;
    IReleaseListener* releaseListener; // owned
};

/// Shares a heap object: the last of all copies to let go releases it through `Policy`.
///
/// Copies may be made and dropped on different threads, since the count has a lock of its own. One
/// value must not be assigned on one thread while another reads or assigns it. The object's
/// destructor runs while the lock of the count is held.
///
/// Two values each made from the same raw pointer do not share it, and release it twice: sharing is
/// only ever made by copying a value.
template <typename T, typename Policy = smart_ptr_policy>
class TOOLKIT_API smart_ptr {
public:
    /// Takes `object` over, which may be null. Without memory for the count it is released.
    smart_ptr(T* object = nullptr)
    try : m_object(object), m_data(new smart_ptr_inner_data<Policy>()) {
    } catch (...) {
        Policy().Release(object);
    }

    smart_ptr(const smart_ptr& other) : m_object(other.m_object), m_data(other.m_data) { AddRef(); }

    ~smart_ptr() { ReleaseRef(); }

    smart_ptr& operator=(const smart_ptr& other)
    {
        if (this == &other)
            return *this;
        // `other` may live inside the object that is released here.
        const smart_ptr kept(other);
        ReleaseRef();
        m_object = kept.m_object;
        m_data = kept.m_data;
        AddRef();
        return *this;
    }

    /// Takes `object` over under a new count, after what was held is let go. `object` must not be
    /// the one that is held already: it would be released first.
    smart_ptr& operator=(T* object)
    {
        // Without memory for the new count everything stays as it was.
        auto* const data = new smart_ptr_inner_data<Policy>();
        ReleaseRef();
        m_object = object;
        m_data = data;
        return *this;
    }

    /// Whether there is an object.
    bool IsValid() const { return m_object != nullptr; }

    /// The object; null when there is none: who may hold nothing asks IsValid() first.
    T* operator->() const
    {
        ASSERT(IsValid());
        return m_object;
    }

    /// The object, which must be there.
    T& operator*() const
    {
        ASSERT(IsValid());
        return *m_object;
    }

    /// The object, which stays shared; null when there is none.
    T* Get() const { return m_object; }

    /// Adds one to the shared count; a count that has reached 0 stays there.
    void AddRef()
    {
        const MutexLocker locker(m_data->lock, MutexInternal::Infinite);
        if (m_data->count != 0)
            ++m_data->count;
    }

    /// Takes one from the shared count and releases object and count at 0. The value must not be
    /// used afterwards, unless others share the count.
    void ReleaseRef()
    {
        smart_ptr_inner_data<Policy>* const data = m_data;
        data->lock.Lock(MutexInternal::Infinite);
        ASSERT(data->count != 0);
        if (--data->count != 0) {
            data->lock.Unlock();
            return;
        }
        data->policy.Release(m_object);
        if (data->releaseListener)
            data->releaseListener->OnReleased();
        data->lock.Unlock();
        delete data;
    }

private:
    T* m_object;
    smart_ptr_inner_data<Policy>* m_data;
};

} // namespace Toolkit
