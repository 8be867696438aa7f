#pragma once

#include "toolkit/core/Assert.h"
#include "toolkit/core/Export.h"
#include "toolkit/threading/Mutex.h"

#include <atomic>
#include <cstdint>
#include <limits>
#include <new>

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

/// Called after the object of a count block has been released. The library installs no listener.
class TOOLKIT_API IReleaseListener {
public:
    virtual ~IReleaseListener();

    /// Called once, after the object was released and before the block is freed.
    virtual void OnReleased() = 0;
};

/// The count that all copies of one `smart_ptr` share.
template <typename Policy>
class TOOLKIT_API smart_ptr_inner_data {
public:
    explicit smart_ptr_inner_data(std::int32_t owners = 1)
        : count(owners), lock(MutexInternal::OnFirstUse()), releaseListener(nullptr)
    {
    }
    ~smart_ptr_inner_data() { delete releaseListener; }

    smart_ptr_inner_data(const smart_ptr_inner_data&) = delete;
    smart_ptr_inner_data& operator=(const smart_ptr_inner_data&) = delete;

    /// The count of a block whose object is being released: so low that copies that the object's
    /// own destructor makes and drops never bring it back to 1.
    static constexpr std::int32_t c_released = std::numeric_limits<std::int32_t>::min() / 2;

    /// The count of a block that is never freed. Far from 1, because two modules of a process may
    /// share the block without sharing the guard variable of its static: then both construct it,
    /// which resets the count.
    static constexpr std::int32_t c_forEver = std::numeric_limits<std::int32_t>::max() / 2;

    std::atomic<std::int32_t> count;
    MutexInternal lock; // unused, keeps the layout
    Policy policy;
    IReleaseListener* releaseListener; // owned
};

/// Shares ownership of a heap object: the last copy that lets go releases it through `Policy`.
///
/// Copies may be made and dropped on different threads, since the count is atomic. One value must
/// not be assigned on one thread while another reads or assigns it.
///
/// The object's destructor may copy and drop pointers to the object: they neither revive it nor
/// release it again.
///
/// Two values constructed from the same raw pointer do not share it: they release it twice. Only
/// copies share.
template <typename T, typename Policy = smart_ptr_policy>
class TOOLKIT_API smart_ptr {
public:
    /// Takes ownership of `object`, which may be null. Throws `std::bad_alloc` when out of memory;
    /// `object` is released then.
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
        // `other` may be inside the object that is released here, so share and read it first.
        smart_ptr_inner_data<Policy>* const data = other.m_data;
        T* const object = other.m_object;
        Share(*data);
        ReleaseRef();
        m_object = object;
        m_data = data;
        return *this;
    }

    /// Gives up the current object, then takes ownership of `object` under a new count. `object`
    /// must not be the current object, which may be released first. Throws `std::bad_alloc` when
    /// out of memory; everything stays as it was, and `object` stays the caller's.
    smart_ptr& operator=(T* object)
    {
        auto* const data = new smart_ptr_inner_data<Policy>();
        ReleaseRef();
        m_object = object;
        m_data = data;
        return *this;
    }

    /// Returns an empty pointer. Unlike the constructor it allocates nothing: all pointers that it
    /// returns share one count.
    static smart_ptr Empty()
    {
        using Data = smart_ptr_inner_data<Policy>;

        // Never destroyed: copies live on while the process ends.
        alignas(Data) static unsigned char storage[sizeof(Data)];
        static Data* const shared = new (storage) Data(Data::c_forEver);
        return smart_ptr(*shared);
    }

    /// Whether the pointer is not null.
    bool IsValid() const { return m_object != nullptr; }

    /// Returns the object. May be null; check IsValid() first.
    T* operator->() const
    {
        ASSERT(IsValid());
        return m_object;
    }

    /// Returns the object. There must be one; check IsValid() first.
    T& operator*() const
    {
        ASSERT(IsValid());
        return *m_object;
    }

    /// Returns the object, which stays shared; may be null.
    T* Get() const { return m_object; }

    /// Increments the shared count. Does not revive an object that is being released.
    void AddRef() { Share(*m_data); }

    /// Decrements the shared count; at 0 releases the object and frees the count. The destructor
    /// decrements the count too, so balance the call with AddRef(). Unless others share the count,
    /// the value must not be used afterwards, not even destroyed.
    void ReleaseRef()
    {
        smart_ptr_inner_data<Policy>* const data = m_data;
        // Release: what this thread did with the object comes before the object's end.
        if (data->count.fetch_sub(1, std::memory_order_release) != 1)
            return;
        // Acquire pairs with the release of every other thread's decrement, since all of them led
        // to this count: what those threads did with the object comes before its end as well.
        static_cast<void>(data->count.load(std::memory_order_acquire));
        // Relaxed: no other thread has a pointer to the block any longer.
        data->count.store(data->c_released, std::memory_order_relaxed);
        data->policy.Release(m_object);
        if (data->releaseListener)
            data->releaseListener->OnReleased();
        delete data;
    }

private:
    // Shares `data`, which holds no object.
    explicit smart_ptr(smart_ptr_inner_data<Policy>& data) : m_object(nullptr), m_data(&data)
    {
        AddRef();
    }

    // Relaxed: the caller already holds a pointer, so the block cannot be freed now. Whatever
    // hands the copy to another thread also synchronizes the two threads.
    static void Share(smart_ptr_inner_data<Policy>& data)
    {
        data.count.fetch_add(1, std::memory_order_relaxed);
    }

    T* m_object;
    smart_ptr_inner_data<Policy>* m_data;
};

} // namespace Toolkit
