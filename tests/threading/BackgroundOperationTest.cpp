#include "toolkit/threading/BackgroundOperation.h"

#include "toolkit/system/TickCount.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;

constexpr std::chrono::seconds c_hangTimeout(60);

// Records its notifications.
class Handler : public BackgroundOperationHandler {
public:
    Handler(std::vector<std::string>& notifications, std::string name)
        : m_notifications(notifications), m_name(std::move(name))
    {
    }

    void OnOperationStarted() override { m_notifications.push_back(m_name + " started"); }
    void OnOperationEnded() override { m_notifications.push_back(m_name + " ended"); }

private:
    std::vector<std::string>& m_notifications;
    std::string m_name;
};

class BackgroundOperationTest : public testing::Test {
protected:
    std::future<bool> WaitOnAThread()
    {
        return std::async(std::launch::async, [this] { return m_operation.Wait(); });
    }

    void AddHandler(const std::string& name)
    {
        m_operation.AddListener(
            smart_ptr<BackgroundOperationHandler>(new Handler(m_notifications, name)));
    }

    std::vector<std::string> m_notifications;
    BackgroundOperation m_operation{42};
};

TEST_F(BackgroundOperationTest, KeepsItsIdentifier)
{
    EXPECT_EQ(m_operation.GetOperationId(), 42u);
}

TEST_F(BackgroundOperationTest, NotifiesItsHandlersInOrder)
{
    AddHandler("a");
    AddHandler("b");

    m_operation.SendOperationStarted();
    m_operation.SendOperationEnded();

    EXPECT_THAT(m_notifications, ElementsAre("a started", "b started", "a ended", "b ended"));
}

TEST_F(BackgroundOperationTest, ReturnsFromWaitWithoutHandlers)
{
    m_operation.SendOperationStarted();
    m_operation.SendOperationEnded();

    EXPECT_TRUE(m_operation.Wait());
}

TEST_F(BackgroundOperationTest, ReturnsFromWaitWhenTheOperationEnds)
{
    m_operation.SendOperationStarted();
    std::future<bool> waiting = WaitOnAThread();

    EXPECT_EQ(waiting.wait_for(std::chrono::milliseconds(0)), std::future_status::timeout);
    m_operation.SendOperationEnded();
    ASSERT_EQ(waiting.wait_for(c_hangTimeout), std::future_status::ready);
    EXPECT_TRUE(waiting.get());
}

TEST_F(BackgroundOperationTest, BlocksWaitUntilTheOperationEndsEvenAfterARestart)
{
    std::future<bool> first = WaitOnAThread();
    EXPECT_EQ(first.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    m_operation.SendOperationEnded();
    EXPECT_TRUE(first.get());

    m_operation.SendOperationStarted();
    std::future<bool> second = WaitOnAThread();
    EXPECT_EQ(second.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    m_operation.SendOperationEnded();
    EXPECT_TRUE(second.get());
}

// Checks in OnOperationEnded() that the operation has ended.
class EventOrderHandler : public BackgroundOperationHandler {
public:
    explicit EventOrderHandler(const BackgroundOperation& operation) : m_operation(operation) {}

    void OnOperationStarted() override {}
    void OnOperationEnded() override
    {
        // Blocks forever if the event is set only after the handlers run.
        EXPECT_TRUE(m_operation.Wait());
    }

private:
    const BackgroundOperation& m_operation;
};

TEST_F(BackgroundOperationTest, SetsTheEventBeforeItNotifiesHandlers)
{
    m_operation.AddListener(
        smart_ptr<BackgroundOperationHandler>(new EventOrderHandler(m_operation)));

    m_operation.SendOperationStarted();
    m_operation.SendOperationEnded();
}

// When the operation starts, starts a thread that calls Wait(). When the operation ends, checks
// that Wait() returns on that thread and on a new one.
class WaitingHandler : public BackgroundOperationHandler {
public:
    explicit WaitingHandler(const BackgroundOperation& operation) : m_operation(operation) {}

    void OnOperationStarted() override { m_waiting = Wait(); }
    void OnOperationEnded() override
    {
        // Earlier and new waiters return while the handlers run.
        EXPECT_EQ(m_waiting.wait_for(c_hangTimeout), std::future_status::ready);
        EXPECT_EQ(Wait().wait_for(c_hangTimeout), std::future_status::ready);
    }

    bool IsWaiting() const
    {
        return m_waiting.wait_for(std::chrono::milliseconds(50)) == std::future_status::timeout;
    }

private:
    std::future<bool> Wait() const
    {
        return std::async(std::launch::async, [this] { return m_operation.Wait(); });
    }

    const BackgroundOperation& m_operation;
    std::future<bool> m_waiting;
};

TEST_F(BackgroundOperationTest, ReleasesWaitersWhileItNotifiesHandlers)
{
    auto* const handler = new WaitingHandler(m_operation);
    m_operation.AddListener(smart_ptr<BackgroundOperationHandler>(handler));

    m_operation.SendOperationStarted();
    EXPECT_TRUE(handler->IsWaiting());
    m_operation.SendOperationEnded();
}

TEST_F(BackgroundOperationTest, ResetsTheEventBeforeItNotifiesHandlers)
{
    m_operation.SendOperationEnded();
    auto* const handler = new WaitingHandler(m_operation);
    m_operation.AddListener(smart_ptr<BackgroundOperationHandler>(handler));

    m_operation.SendOperationStarted();

    EXPECT_TRUE(handler->IsWaiting());
    m_operation.SendOperationEnded();
}

TEST_F(BackgroundOperationTest, SetsTheEventEvenIfAHandlerThrows)
{
    class Thrower : public BackgroundOperationHandler {
    public:
        void OnOperationStarted() override {}
        void OnOperationEnded() override { throw std::runtime_error("handler"); }
    };
    m_operation.AddListener(smart_ptr<BackgroundOperationHandler>(new Thrower()));
    m_operation.SendOperationStarted();

    EXPECT_THROW(m_operation.SendOperationEnded(), std::runtime_error);

    EXPECT_TRUE(m_operation.Wait());
}

TEST_F(BackgroundOperationTest, NotifiesHandlersAgainWhenEndedTwice)
{
    AddHandler("a");

    m_operation.SendOperationEnded();
    m_operation.SendOperationEnded();

    EXPECT_TRUE(m_operation.Wait());
    EXPECT_THAT(m_notifications, ElementsAre("a ended", "a ended"));
}

TEST_F(BackgroundOperationTest, IsAnEventNotifier)
{
    static_assert(
        std::is_base_of_v<EventNotifier<BackgroundOperationHandler>, BackgroundOperation>);
    static_assert(std::has_virtual_destructor_v<BackgroundOperation>);
    static_assert(std::has_virtual_destructor_v<BackgroundOperationHandler>);
}

TEST_F(BackgroundOperationTest, ReturnsZeroAsTheDateBeforeTheFirstUpdate)
{
    EXPECT_EQ(m_operation.GetLastOperationDate(), 0u);
}

TEST_F(BackgroundOperationTest, StoresTheTickCountOfTheLastUpdate)
{
    const unsigned int before = GetTickCount();
    m_operation.UpdateLastOperationDate();
    const unsigned int after = GetTickCount();

    EXPECT_LE(m_operation.GetLastOperationDate() - before, after - before);
}

} // namespace
} // namespace Toolkit
