#include "toolkit/threading/EventNotifier.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class IListener {
public:
    virtual ~IListener() = default;
    virtual void OnEvent() = 0;
};

class Notifier : public EventNotifier<IListener> {
public:
    void Send()
    {
        Notify([](IListener& listener) { listener.OnEvent(); });
    }
};

class CountingListener : public IListener {
public:
    explicit CountingListener(std::atomic<int>& calls) : m_calls(calls) {}
    void OnEvent() override { ++m_calls; }

private:
    std::atomic<int>& m_calls;
};

// Notifies the listeners of `notifier` in its destructor.
class NotifyingListener : public IListener {
public:
    explicit NotifyingListener(Notifier& notifier) : m_notifier(notifier) {}
    ~NotifyingListener() override { m_notifier.Send(); }
    void OnEvent() override {}

private:
    Notifier& m_notifier;
};

class EventNotifierTest : public testing::Test {
protected:
    class Listener : public IListener {
    public:
        Listener(EventNotifierTest& test, std::string name, std::function<void()> action)
            : m_test(test), m_name(std::move(name)), m_action(std::move(action))
        {
        }
        ~Listener() override { m_test.m_destroyed.push_back(m_name); }

        void OnEvent() override
        {
            m_test.m_calls.push_back(m_name);
            if (m_action)
                m_action();
        }

    private:
        EventNotifierTest& m_test;
        std::string m_name;
        std::function<void()> m_action;
    };

    // Returns a listener that records its calls and its destruction, and runs `action` in each
    // call.
    smart_ptr<IListener> CreateListener(const std::string& name, std::function<void()> action = {})
    {
        return smart_ptr<IListener>(new Listener(*this, name, std::move(action)));
    }

    std::vector<std::string> m_calls;
    std::vector<std::string> m_destroyed;
    Notifier m_notifier;
};

TEST_F(EventNotifierTest, CallsListenersInTheOrderTheyWereAdded)
{
    for (const char* const name : {"b", "a", "c"})
        m_notifier.AddListener(CreateListener(name));

    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("b", "a", "c"));
}

TEST_F(EventNotifierTest, CallsAListenerTwiceWhenAddedTwice)
{
    const smart_ptr<IListener> listener = CreateListener("a");
    m_notifier.AddListener(listener);
    m_notifier.AddListener(listener);

    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("a", "a"));
}

TEST_F(EventNotifierTest, IgnoresAnEmptyPointer)
{
    m_notifier.AddListener(smart_ptr<IListener>());

    m_notifier.Send();

    EXPECT_THAT(m_calls, IsEmpty());
    EXPECT_FALSE(m_notifier.RemoveListener(smart_ptr<IListener>()));
}

TEST_F(EventNotifierTest, RemovesTheFirstEntryOfAListener)
{
    const smart_ptr<IListener> listener = CreateListener("a");
    m_notifier.AddListener(listener);
    m_notifier.AddListener(CreateListener("b"));
    m_notifier.AddListener(listener);

    EXPECT_TRUE(m_notifier.RemoveListener(listener));

    m_notifier.Send();
    EXPECT_THAT(m_calls, ElementsAre("b", "a"));
}

TEST_F(EventNotifierTest, ReturnsFalseWhenRemovingAnUnknownListener)
{
    m_notifier.AddListener(CreateListener("a"));

    EXPECT_FALSE(m_notifier.RemoveListener(CreateListener("b")));
}

TEST_F(EventNotifierTest, KeepsListenersAliveUntilItIsDestroyed)
{
    {
        Notifier notifier;
        notifier.AddListener(CreateListener("a"));
        EXPECT_THAT(m_destroyed, IsEmpty());
    }
    EXPECT_THAT(m_destroyed, ElementsAre("a"));
}

TEST_F(EventNotifierTest, LetsAListenerRemoveItself)
{
    smart_ptr<IListener> self;
    self = CreateListener("a", [&] { m_notifier.RemoveListener(self); });
    m_notifier.AddListener(self);
    m_notifier.AddListener(CreateListener("b"));

    m_notifier.Send();
    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("a", "b", "b"));
}

TEST_F(EventNotifierTest, KeepsARemovedListenerAliveUntilThePassEnds)
{
    smart_ptr<IListener> self;
    self = CreateListener("a", [&] {
        m_notifier.RemoveListener(self);
        self = nullptr;
        EXPECT_THAT(m_destroyed, IsEmpty());
    });
    m_notifier.AddListener(self);

    m_notifier.Send();

    EXPECT_THAT(m_destroyed, ElementsAre("a"));
}

TEST_F(EventNotifierTest, LetsARemovedListenerNotifyInItsDestructor)
{
    smart_ptr<IListener> removed(new NotifyingListener(m_notifier));
    m_notifier.AddListener(CreateListener("remover", [&] {
        m_notifier.RemoveListener(removed);
        removed = smart_ptr<IListener>();
    }));
    m_notifier.AddListener(removed);

    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("remover", "remover"));
}

TEST_F(EventNotifierTest, SkipsAListenerThatWasRemovedBeforeItsTurn)
{
    const smart_ptr<IListener> last = CreateListener("c");
    m_notifier.AddListener(CreateListener("a", [&] { m_notifier.RemoveListener(last); }));
    m_notifier.AddListener(CreateListener("b"));
    m_notifier.AddListener(last);

    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("a", "b"));
}

TEST_F(EventNotifierTest, CallsAListenerThatIsAddedDuringThePass)
{
    bool hasAdded = false;
    m_notifier.AddListener(CreateListener("a", [&] {
        if (!hasAdded)
            m_notifier.AddListener(CreateListener("b"));
        hasAdded = true;
    }));

    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("a", "b"));
}

TEST_F(EventNotifierTest, SupportsNestedPasses)
{
    const smart_ptr<IListener> last = CreateListener("c");
    bool isNested = false;
    m_notifier.AddListener(CreateListener("a", [&] {
        if (std::exchange(isNested, true))
            return;
        m_notifier.RemoveListener(last);
        m_notifier.Send();
    }));
    m_notifier.AddListener(CreateListener("b"));
    m_notifier.AddListener(last);

    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("a", "a", "b", "b"));
}

TEST_F(EventNotifierTest, EndsThePassAndUnlocksWhenAListenerThrows)
{
    m_notifier.AddListener(CreateListener("a", [] { throw std::runtime_error("handler"); }));
    m_notifier.AddListener(CreateListener("b"));

    EXPECT_THROW(m_notifier.Send(), std::runtime_error);

    EXPECT_THAT(m_calls, ElementsAre("a"));
    auto adding =
        std::async(std::launch::async, [&] { m_notifier.AddListener(CreateListener("c")); });
    EXPECT_EQ(adding.wait_for(std::chrono::seconds(60)), std::future_status::ready);
}

TEST_F(EventNotifierTest, LetsAListenerRemoveAnEarlierOne)
{
    const smart_ptr<IListener> first = CreateListener("a");
    m_notifier.AddListener(first);
    m_notifier.AddListener(CreateListener("b", [&] { m_notifier.RemoveListener(first); }));
    m_notifier.AddListener(CreateListener("c"));

    m_notifier.Send();
    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("a", "b", "c", "b", "c"));
}

TEST_F(EventNotifierTest, LetsAListenerRemoveAllListeners)
{
    std::vector<smart_ptr<IListener>> all;
    all.push_back(CreateListener("a", [&] {
        for (const smart_ptr<IListener>& listener : all)
            EXPECT_TRUE(m_notifier.RemoveListener(listener));
        EXPECT_FALSE(m_notifier.RemoveListener(all.front()));
    }));
    all.push_back(CreateListener("b"));
    for (const smart_ptr<IListener>& listener : all)
        m_notifier.AddListener(listener);

    m_notifier.Send();
    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("a"));
}

TEST_F(EventNotifierTest, CallsAListenerAgainWhenItReaddsItself)
{
    smart_ptr<IListener> self;
    bool hasMoved = false;
    self = CreateListener("a", [&] {
        if (std::exchange(hasMoved, true))
            return;
        m_notifier.RemoveListener(self);
        m_notifier.AddListener(self);
    });
    m_notifier.AddListener(self);
    m_notifier.AddListener(CreateListener("b"));

    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("a", "b", "a"));
}

TEST_F(EventNotifierTest, RunsAFullPassAfterAListenerThrew)
{
    bool hasThrown = false;
    smart_ptr<IListener> self;
    self = CreateListener("a", [&] {
        m_notifier.RemoveListener(self);
        if (!std::exchange(hasThrown, true))
            throw std::runtime_error("handler");
    });
    m_notifier.AddListener(self);
    m_notifier.AddListener(CreateListener("b"));
    EXPECT_THROW(m_notifier.Send(), std::runtime_error);

    m_notifier.Send();

    EXPECT_THAT(m_calls, ElementsAre("a", "b"));
}

TEST_F(EventNotifierTest, LetsThreadsAddRemoveAndNotifyConcurrently)
{
    constexpr int rounds = 1000;
    std::atomic<int> calls = 0;
    const auto add = [&] {
        for (int i = 0; i < rounds; ++i) {
            const smart_ptr<IListener> listener(new CountingListener(calls));
            m_notifier.AddListener(listener);
            m_notifier.Send();
            EXPECT_TRUE(m_notifier.RemoveListener(listener));
        }
    };
    std::thread other(add);
    add();
    other.join();

    EXPECT_GE(calls, 2 * rounds);
    calls = 0;
    m_notifier.Send();
    EXPECT_EQ(calls, 0);
}

TEST_F(EventNotifierTest, BlocksOtherThreadsUntilAPassEnds)
{
    std::promise<void> isAdded;
    std::future<void> added = isAdded.get_future();
    std::thread adder;
    m_notifier.AddListener(CreateListener("a", [&] {
        adder = std::thread([&] {
            m_notifier.AddListener(CreateListener("b"));
            isAdded.set_value();
        });
        // A thread that is not blocked needs far less than 200 ms.
        EXPECT_EQ(added.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
    }));

    m_notifier.Send();
    adder.join();
    EXPECT_THAT(m_calls, ElementsAre("a"));
}

} // namespace
} // namespace Toolkit
