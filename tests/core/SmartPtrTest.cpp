#include "toolkit/core/smart_ptr.h"

#include "support/OutOfMemory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <latch>
#include <new>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace Toolkit {
namespace {

// Counts the live objects of this class.
class Counted {
public:
    Counted() { ++s_alive; }
    virtual ~Counted() { --s_alive; }

    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    static std::atomic<int> s_alive;
};

std::atomic<int> Counted::s_alive{0};

class Derived : public Counted {
public:
    explicit Derived(bool& destroyed) : m_destroyed(destroyed) {}
    ~Derived() override { m_destroyed = true; }

private:
    bool& m_destroyed;
};

// Records the objects that it releases.
struct RecordingPolicy {
    template <typename T>
    void Release(T* object)
    {
        s_released.push_back(object);
        delete object;
    }
    static std::vector<const void*> s_released;
};

std::vector<const void*> RecordingPolicy::s_released;

// Releases nothing: the objects are on the stack.
struct InertPolicy {
    template <typename T>
    void Release(T*)
    {
    }
};

// The two fields of every smart_ptr.
template <typename T, typename Policy>
struct Fields {
    T* object;
    smart_ptr_inner_data<Policy>* data;
};

template <typename T, typename Policy>
smart_ptr_inner_data<Policy>& DataOf(const smart_ptr<T, Policy>& pointer)
{
    return *reinterpret_cast<const Fields<T, Policy>&>(pointer).data;
}

class SmartPtrTest : public testing::Test {
protected:
    SmartPtrTest() { RecordingPolicy::s_released.clear(); }
    ~SmartPtrTest() override { EXPECT_EQ(Counted::s_alive, 0); }
};

TEST_F(SmartPtrTest, StoresTheObjectPointerBeforeTheCountPointer)
{
    Counted* const object = new Counted();
    const smart_ptr<Counted> pointer(object);

    const auto& fields = reinterpret_cast<const Fields<Counted, smart_ptr_policy>&>(pointer);
    EXPECT_EQ(sizeof(pointer), 2 * sizeof(void*));
    EXPECT_EQ(fields.object, object);
    EXPECT_EQ(fields.data->count, 1);
}

TEST_F(SmartPtrTest, KeepsTheLayoutOfItsCountBlock)
{
    smart_ptr_inner_data<smart_ptr_policy> data;

    const auto offset = [&data](const auto& field) {
        return reinterpret_cast<const char*>(&field) - reinterpret_cast<const char*>(&data);
    };
    EXPECT_EQ(offset(data.count), 0);
    EXPECT_LT(offset(data.count), offset(data.lock));
    EXPECT_LT(offset(data.lock), offset(data.policy));
    EXPECT_LT(offset(data.policy), offset(data.releaseListener));
    static_assert(sizeof(data.count) == sizeof(std::int32_t) &&
                  decltype(data.count)::is_always_lock_free);
    static_assert(std::is_empty_v<smart_ptr_policy> && std::is_empty_v<smart_ptr_array_policy>);
}

TEST_F(SmartPtrTest, StartsACountBlockAtOneWithoutAListener)
{
    const smart_ptr_inner_data<smart_ptr_policy> data;

    EXPECT_EQ(data.count, 1);
    EXPECT_EQ(data.releaseListener, nullptr);
}

TEST_F(SmartPtrTest, HasALockThatWorksFromItsFirstUse)
{
    smart_ptr_inner_data<smart_ptr_policy> data;

    ASSERT_TRUE(data.lock.Lock(MutexInternal::Infinite));
    bool lockedByAnother = true;
    std::thread([&] { lockedByAnother = data.lock.Lock(0); }).join();
    EXPECT_FALSE(lockedByAnother);
    EXPECT_TRUE(data.lock.Unlock());
}

TEST_F(SmartPtrTest, AllocatesNothingButItsCountBlock)
{
    auto* const object = new Counted();
    const TestSupport::FailingAllocation second(1);

    {
        const smart_ptr<Counted> pointer(object);
        EXPECT_EQ(pointer.Get(), object);
    }

    EXPECT_FALSE(second.HasFailed());
}

TEST_F(SmartPtrTest, HasACountBlockButNoObjectWhenEmpty)
{
    const smart_ptr<Counted> pointer;

    EXPECT_FALSE(pointer.IsValid());
    EXPECT_EQ(pointer.Get(), nullptr);
    EXPECT_EQ(pointer.operator->(), nullptr);
    EXPECT_EQ(DataOf(pointer).count, 1);
}

TEST_F(SmartPtrTest, CallsThePolicyWithNullForAnEmptyPointer)
{
    {
        const smart_ptr<Counted, RecordingPolicy> pointer;
    }

    EXPECT_EQ(RecordingPolicy::s_released, std::vector<const void*>{nullptr});
}

TEST_F(SmartPtrTest, GivesAccessToItsObject)
{
    std::string* const text = new std::string("text");
    const smart_ptr<std::string> constant(text);
    smart_ptr<std::string> changeable(constant);

    changeable->append("s");

    EXPECT_TRUE(constant.IsValid());
    EXPECT_EQ(constant.Get(), text);
    EXPECT_EQ(constant->size(), 5u);
    EXPECT_EQ(*changeable, "texts");
}

TEST_F(SmartPtrTest, ReleasesTheObjectOnceWithTheLastCopy)
{
    {
        smart_ptr<Counted, RecordingPolicy> first(new Counted());
        {
            const smart_ptr<Counted, RecordingPolicy> second(first);
            EXPECT_EQ(second.Get(), first.Get());
            EXPECT_EQ(DataOf(first).count, 2);
        }
        EXPECT_TRUE(RecordingPolicy::s_released.empty());
        EXPECT_EQ(DataOf(first).count, 1);
    }

    EXPECT_EQ(RecordingPolicy::s_released.size(), 1u);
}

TEST_F(SmartPtrTest, AllocatesNothingForCopies)
{
    const smart_ptr<Counted> original(new Counted());
    smart_ptr<Counted> assigned;
    {
        const TestSupport::AllocationLimit none(0);
        const smart_ptr<Counted> copy(original);
        assigned = copy;
    }

    EXPECT_EQ(assigned.Get(), original.Get());
}

TEST_F(SmartPtrTest, KeepsTheObjectPointerInReleaseRef)
{
    Counted object;
    smart_ptr<Counted, InertPolicy> pointer(&object);
    const smart_ptr<Counted, InertPolicy> copy(pointer);

    pointer.ReleaseRef();

    EXPECT_EQ(pointer.Get(), &object);
    EXPECT_EQ(DataOf(copy).count, 1);
    pointer.AddRef();
}

TEST_F(SmartPtrTest, DestroysASingleObjectThroughItsVirtualDestructor)
{
    bool destroyed = false;
    {
        const smart_ptr<Counted> pointer(new Derived(destroyed));
    }

    EXPECT_TRUE(destroyed);
}

TEST_F(SmartPtrTest, DestroysEveryElementWithTheArrayPolicy)
{
    {
        const smart_ptr<Counted, smart_ptr_array_policy> pointer(new Counted[3]);
        EXPECT_EQ(Counted::s_alive, 3);
    }

    EXPECT_EQ(Counted::s_alive, 0);
}

TEST_F(SmartPtrTest, HoldsArraysOfPointersWithTheArrayPolicy)
{
    const smart_ptr<char*, smart_ptr_array_policy> arguments(new char* [2] { nullptr, nullptr });
    const smart_ptr<char*, smart_ptr_array_policy> none;

    EXPECT_EQ(*arguments, nullptr);
    EXPECT_FALSE(none.IsValid());
}

TEST_F(SmartPtrTest, SharesTheNewAndReleasesTheOldObjectInAssignment)
{
    smart_ptr<Counted, RecordingPolicy> first(new Counted());
    const smart_ptr<Counted, RecordingPolicy> second(new Counted());
    const void* const oldObject = first.Get();

    const auto& result = (first = second);

    EXPECT_EQ(&result, &first);
    EXPECT_EQ(first.Get(), second.Get());
    EXPECT_EQ(DataOf(second).count, 2);
    EXPECT_EQ(RecordingPolicy::s_released, std::vector<const void*>{oldObject});
}

TEST_F(SmartPtrTest, ChangesNothingInSelfAssignment)
{
    smart_ptr<Counted> pointer(new Counted());
    const smart_ptr<Counted>& same = pointer;

    pointer = same;

    EXPECT_TRUE(pointer.IsValid());
    EXPECT_EQ(DataOf(pointer).count, 1);
    EXPECT_EQ(Counted::s_alive, 1);
}

TEST_F(SmartPtrTest, KeepsTheCountInAssignmentBetweenCopies)
{
    smart_ptr<Counted> first(new Counted());
    const smart_ptr<Counted> second(first);

    first = second;

    EXPECT_EQ(DataOf(first).count, 2);
}

TEST_F(SmartPtrTest, StartsANewCountForARawPointer)
{
    smart_ptr<Counted, RecordingPolicy> pointer(new Counted());
    const smart_ptr<Counted, RecordingPolicy> copy(pointer);
    Counted* const other = new Counted();

    const auto& result = (pointer = other);

    EXPECT_EQ(&result, &pointer);
    EXPECT_EQ(pointer.Get(), other);
    EXPECT_EQ(DataOf(pointer).count, 1);
    EXPECT_EQ(DataOf(copy).count, 1);
    EXPECT_TRUE(RecordingPolicy::s_released.empty());
}

TEST_F(SmartPtrTest, ReleasesTheObjectWhenNullIsAssigned)
{
    smart_ptr<Counted> pointer(new Counted());

    pointer = nullptr;

    EXPECT_FALSE(pointer.IsValid());
    EXPECT_EQ(Counted::s_alive, 0);
}

TEST_F(SmartPtrTest, ChangesNothingInAssignmentWhenOutOfMemory)
{
    smart_ptr<Counted> pointer(new Counted());
    const Counted* const object = pointer.Get();

    {
        const TestSupport::AllocationLimit none(0);
        EXPECT_THROW(pointer = nullptr, std::bad_alloc);
    }

    EXPECT_EQ(pointer.Get(), object);
    EXPECT_EQ(Counted::s_alive, 1);
}

TEST_F(SmartPtrTest, ReleasesTheObjectWhenOutOfMemoryForTheCount)
{
    auto* const object = new Counted();

    {
        const TestSupport::AllocationLimit none(0);
        EXPECT_THROW(const smart_ptr<Counted> pointer(object), std::bad_alloc);
    }

    EXPECT_EQ(Counted::s_alive, 0);
}

TEST_F(SmartPtrTest, StartsANewCountForTheSameRawPointer)
{
    Counted object;
    {
        smart_ptr<Counted, InertPolicy> pointer(&object);
        const smart_ptr<Counted, InertPolicy> copy(pointer);

        pointer = &object;

        EXPECT_EQ(pointer.Get(), &object);
        EXPECT_EQ(DataOf(pointer).count, 1);
        EXPECT_EQ(DataOf(copy).count, 1);
    }
}

struct Node : Counted {
    smart_ptr<Node> next;
};

TEST_F(SmartPtrTest, CanBeAssignedFromWithinTheObjectItReleases)
{
    smart_ptr<Node> head(new Node());
    head->next = new Node();
    head->next->next = new Node();
    const Node* const third = head->next->next.Get();

    head = head->next;
    head = head->next;

    EXPECT_EQ(head.Get(), third);
    EXPECT_EQ(DataOf(head).count, 1);
    EXPECT_EQ(Counted::s_alive, 1);
}

// Its destructor copies the pointer that owns it, records the count, and drops the copies.
struct SelfCopying : Counted {
    ~SelfCopying() override
    {
        const smart_ptr<SelfCopying> first(*self);
        const smart_ptr<SelfCopying> second(first);
        countWhileDying = DataOf(*self).count;
    }
    const smart_ptr<SelfCopying>* self = nullptr;
    static int countWhileDying;
};

int SelfCopying::countWhileDying = 1;

TEST_F(SmartPtrTest, DoesNotReviveTheObjectByCopiesInItsDestructor)
{
    {
        const smart_ptr<SelfCopying> pointer(new SelfCopying());
        pointer->self = &pointer;
    }

    EXPECT_LT(SelfCopying::countWhileDying, 0);
    EXPECT_EQ(Counted::s_alive, 0);
}

class Listener : public IReleaseListener {
public:
    explicit Listener(std::string& events) : m_events(events) {}
    ~Listener() override { m_events += "deleted "; }
    void OnReleased() override
    {
        m_events += Counted::s_alive == 0 ? "released-after-object " : "released-before-object ";
    }

private:
    std::string& m_events;
};

TEST_F(SmartPtrTest, CallsTheReleaseListenerOnceAndDeletesItWithTheBlock)
{
    std::string events;
    {
        const smart_ptr<Counted> pointer(new Counted());
        DataOf(pointer).releaseListener = new Listener(events);
        const smart_ptr<Counted> copy(pointer);
    }

    EXPECT_EQ(events, "released-after-object deleted ");
}

TEST_F(SmartPtrTest, CountsCopiesOnSeveralThreads)
{
    constexpr int threadCount = 4;
    constexpr int rounds = 5000;
    smart_ptr<Counted> pointer(new Counted());
    std::latch start(threadCount);

    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&start, pointer] {
            start.arrive_and_wait();
            smart_ptr<Counted> mine;
            for (int round = 0; round < rounds; ++round) {
                const smart_ptr<Counted> copy(pointer);
                mine = copy;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    threads.clear();
    EXPECT_EQ(DataOf(pointer).count, 1);
    EXPECT_EQ(Counted::s_alive, 1);
}

TEST_F(SmartPtrTest, ReleasesTheObjectOnAnyThread)
{
    for (int round = 0; round < 200; ++round) {
        std::latch start(2);
        const auto drop = [&start](smart_ptr<Counted>* pointer) {
            start.arrive_and_wait();
            delete pointer;
        };
        auto* const first = new smart_ptr<Counted>(new Counted());
        auto* const second = new smart_ptr<Counted>(*first);

        std::thread other(drop, first);
        drop(second);
        other.join();

        ASSERT_EQ(Counted::s_alive, 0);
    }
}

} // namespace
} // namespace Toolkit
