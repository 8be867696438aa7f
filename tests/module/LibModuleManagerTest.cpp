#include "toolkit/module/LibModuleManager.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <future>
#include <latch>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Calls = std::vector<std::string>;

// Records each call and then runs the action that is set for it.
class RecordingModule : public LibModule {
public:
    RecordingModule(std::string name, Calls& calls) : m_name(std::move(name)), m_calls(calls) {}

    void Initialize() override
    {
        m_calls.push_back("+" + m_name);
        if (onInitialize)
            onInitialize();
    }

    void Release() override
    {
        m_calls.push_back("-" + m_name);
        if (onRelease)
            onRelease();
    }

    std::function<void()> onInitialize;
    std::function<void()> onRelease;

private:
    std::string m_name;
    Calls& m_calls;
};

class LibModuleManagerTest : public testing::Test {
protected:
    void RegisterAll()
    {
        for (RecordingModule* const module : {&m_first, &m_second, &m_third})
            m_manager.Register(module);
    }

    // Starts and stops the modules once more. Returns the calls, which show the modules that are
    // still registered.
    Calls StartAndStopAgain()
    {
        m_calls.clear();
        m_manager.Initialize(false);
        m_manager.Release(false);
        return m_calls;
    }

    Calls m_calls;
    RecordingModule m_first{"1", m_calls};
    RecordingModule m_second{"2", m_calls};
    RecordingModule m_third{"3", m_calls};
    LibModuleManager m_manager;
};

TEST_F(LibModuleManagerTest, DoesNotInitializeModulesBeforeTheStart)
{
    m_manager.Register(&m_first);

    EXPECT_THAT(m_calls, IsEmpty());
}

TEST_F(LibModuleManagerTest, InitializesInTheOrderOfRegistration)
{
    RegisterAll();

    m_manager.Initialize(false);

    EXPECT_THAT(m_calls, ElementsAre("+1", "+2", "+3"));
}

TEST_F(LibModuleManagerTest, ReleasesInTheReverseOrder)
{
    RegisterAll();
    m_manager.Initialize(false);
    m_calls.clear();

    m_manager.Release(false);

    EXPECT_THAT(m_calls, ElementsAre("-3", "-2", "-1"));
}

TEST_F(LibModuleManagerTest, InitializesAModuleAtOnceAfterTheStart)
{
    m_manager.Initialize(false);

    m_manager.Register(&m_first);

    EXPECT_THAT(m_calls, ElementsAre("+1"));
}

TEST_F(LibModuleManagerTest, DoesNotInitializeModulesAfterTheRelease)
{
    m_manager.Initialize(false);
    m_manager.Release(false);

    m_manager.Register(&m_first);

    EXPECT_THAT(m_calls, IsEmpty());
}

TEST_F(LibModuleManagerTest, CountsRepeatedRegistrations)
{
    m_manager.Initialize(false);
    m_manager.Register(&m_first);
    m_manager.Register(&m_first);
    m_calls.clear();

    m_manager.Unregister(&m_first);
    EXPECT_THAT(m_calls, IsEmpty());
    m_manager.Unregister(&m_first);

    EXPECT_THAT(m_calls, ElementsAre("-1"));
    EXPECT_THAT(StartAndStopAgain(), IsEmpty());
}

TEST_F(LibModuleManagerTest, DoesNotReleaseAModuleUnregisteredBeforeTheStart)
{
    RegisterAll();

    m_manager.Unregister(&m_second);

    EXPECT_THAT(m_calls, IsEmpty());
    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "+3", "-3", "-1"));
}

TEST_F(LibModuleManagerTest, IgnoresUnknownModules)
{
    m_manager.Register(&m_first);

    m_manager.Unregister(&m_second);
    m_manager.Unregister(nullptr);
    m_manager.Register(nullptr);

    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "-1"));
}

TEST_F(LibModuleManagerTest, InitializesModulesAgainAtASecondStart)
{
    m_manager.Register(&m_first);

    m_manager.Initialize(false);
    m_manager.Initialize(false);
    m_manager.Release(false);

    EXPECT_THAT(m_calls, ElementsAre("+1", "+1", "-1"));
}

TEST_F(LibModuleManagerTest, ReleasesModulesWithoutAStart)
{
    m_manager.Register(&m_first);

    m_manager.Release(false);

    EXPECT_THAT(m_calls, ElementsAre("-1"));
}

TEST_F(LibModuleManagerTest, LetsAModuleUnregisterItselfDuringARelease)
{
    RegisterAll();
    m_manager.Initialize(false);
    m_second.onRelease = [this] { m_manager.Unregister(&m_second); };
    m_calls.clear();

    m_manager.Release(false);

    EXPECT_THAT(m_calls, ElementsAre("-3", "-2", "-1"));
    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "+3", "-3", "-1"));
}

TEST_F(LibModuleManagerTest, ReleasesAModuleThatAnotherUnregistersDuringARelease)
{
    RegisterAll();
    m_manager.Initialize(false);
    m_third.onRelease = [this] { m_manager.Unregister(&m_first); };
    m_calls.clear();

    m_manager.Release(false);

    EXPECT_THAT(m_calls, ElementsAre("-3", "-2", "-1"));
    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+2", "+3", "-3", "-2"));
}

TEST_F(LibModuleManagerTest, RemovesAModuleUnregisteredTwiceDuringARelease)
{
    RegisterAll();
    m_manager.Initialize(false);
    m_second.onRelease = [this] {
        m_manager.Unregister(&m_second);
        m_manager.Unregister(&m_second);
    };

    m_manager.Release(false);

    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "+3", "-3", "-1"));
}

TEST_F(LibModuleManagerTest, RemovesAModuleRegisteredAgainDuringARelease)
{
    RegisterAll();
    m_manager.Initialize(false);
    m_second.onRelease = [this] {
        m_manager.Unregister(&m_second);
        m_manager.Register(&m_second);
        m_manager.Unregister(&m_second);
        m_manager.Register(&m_second);
    };

    m_manager.Release(false);

    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "+3", "-3", "-1"));
}

TEST_F(LibModuleManagerTest, InitializesAndKeepsAModuleRegisteredDuringARelease)
{
    m_manager.Register(&m_first);
    m_manager.Register(&m_second);
    m_manager.Initialize(false);
    m_second.onRelease = [this] { m_manager.Register(&m_third); };
    m_calls.clear();

    m_manager.Release(false);

    EXPECT_THAT(m_calls, ElementsAre("-2", "+3", "-1"));
    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "+2", "+3", "-3", "-2", "-1"));
}

TEST_F(LibModuleManagerTest, InitializesModulesRegisteredDuringTheStartLast)
{
    m_manager.Register(&m_first);
    m_manager.Register(&m_second);
    m_first.onInitialize = [this] { m_manager.Register(&m_third); };

    m_manager.Initialize(false);

    EXPECT_THAT(m_calls, ElementsAre("+1", "+2", "+3"));
}

TEST_F(LibModuleManagerTest, LetsAModuleUnregisterItselfDuringTheStart)
{
    RegisterAll();
    m_second.onInitialize = [this] { m_manager.Unregister(&m_second); };

    m_manager.Initialize(false);

    EXPECT_THAT(m_calls, ElementsAre("+1", "+2", "+3"));
    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "+3", "-3", "-1"));
}

TEST_F(LibModuleManagerTest, SkipsAModuleUnregisteredBeforeItsTurn)
{
    RegisterAll();
    m_first.onInitialize = [this] { m_manager.Unregister(&m_second); };

    m_manager.Initialize(false);

    EXPECT_THAT(m_calls, ElementsAre("+1", "+3"));
}

TEST_F(LibModuleManagerTest, MovesAModuleRegisteredAgainDuringTheStartToTheEnd)
{
    RegisterAll();
    m_first.onInitialize = [this] {
        m_manager.Unregister(&m_second);
        m_manager.Register(&m_second);
    };

    m_manager.Initialize(false);

    EXPECT_THAT(m_calls, ElementsAre("+1", "+3", "+2"));
}

TEST_F(LibModuleManagerTest, ReleasesAModuleUnregisteredDuringASecondStart)
{
    RegisterAll();
    m_manager.Initialize(false);
    m_second.onInitialize = [this] { m_manager.Unregister(&m_third); };
    m_calls.clear();

    m_manager.Initialize(false);

    EXPECT_THAT(m_calls, ElementsAre("+1", "+2", "-3"));
}

TEST_F(LibModuleManagerTest, IgnoresUnregisteringAModuleAgainInItsRelease)
{
    RegisterAll();
    m_manager.Initialize(false);
    m_second.onRelease = [this] { m_manager.Unregister(&m_second); };
    m_calls.clear();

    m_manager.Unregister(&m_second);

    EXPECT_THAT(m_calls, ElementsAre("-2"));
    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "+3", "-3", "-1"));
}

TEST_F(LibModuleManagerTest, KeepsTheListIntactInNestedReleases)
{
    RegisterAll();
    m_manager.Initialize(false);
    m_third.onRelease = [this] {
        m_third.onRelease = nullptr;
        m_manager.Unregister(&m_first);
        m_manager.Release(false);
    };
    m_calls.clear();

    m_manager.Release(false);

    EXPECT_THAT(m_calls, ElementsAre("-3", "-3", "-2", "-1", "-2"));
    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+2", "+3", "-3", "-2"));
}

void ThrowFromModule()
{
    throw std::runtime_error("thrown by the module");
}

TEST_F(LibModuleManagerTest, InitializesTheOthersWhenAModuleThrows)
{
    RegisterAll();
    m_first.onInitialize = ThrowFromModule;
    m_second.onInitialize = [] { throw 2; };

    EXPECT_THROW(m_manager.Initialize(false), std::runtime_error);

    EXPECT_THAT(m_calls, ElementsAre("+1", "+2", "+3"));
    m_manager.Unregister(&m_third);
    EXPECT_EQ(m_calls.back(), "-3");
}

TEST_F(LibModuleManagerTest, DoesNotRegisterAModuleThatThrowsDuringRegister)
{
    m_manager.Register(&m_first);
    m_manager.Initialize(false);
    m_second.onInitialize = ThrowFromModule;

    EXPECT_THROW(m_manager.Register(&m_second), std::runtime_error);

    m_second.onInitialize = nullptr;
    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "-1"));
}

TEST_F(LibModuleManagerTest, ReleasesTheOthersWhenAModuleThrows)
{
    RegisterAll();
    m_manager.Initialize(false);
    m_third.onRelease = ThrowFromModule;
    m_second.onRelease = [this] {
        m_manager.Unregister(&m_second);
        throw 2;
    };
    m_calls.clear();

    EXPECT_THROW(m_manager.Release(false), std::runtime_error);

    EXPECT_THAT(m_calls, ElementsAre("-3", "-2", "-1"));
    m_third.onRelease = nullptr;
    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "+3", "-3", "-1"));
}

TEST_F(LibModuleManagerTest, IsStoppedAfterAReleaseThatThrew)
{
    m_manager.Register(&m_first);
    m_manager.Initialize(false);
    m_first.onRelease = ThrowFromModule;
    EXPECT_THROW(m_manager.Release(false), std::runtime_error);
    m_calls.clear();

    m_manager.Register(&m_second);
    m_manager.Unregister(&m_first);

    EXPECT_THAT(m_calls, IsEmpty());
    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+2", "-2"));
}

TEST_F(LibModuleManagerTest, RemovesAModuleThatThrowsDuringUnregister)
{
    RegisterAll();
    m_manager.Initialize(false);
    m_second.onRelease = ThrowFromModule;

    EXPECT_THROW(m_manager.Unregister(&m_second), std::runtime_error);

    EXPECT_THAT(StartAndStopAgain(), ElementsAre("+1", "+3", "-3", "-1"));
}

TEST_F(LibModuleManagerTest, ServesSeveralThreadsAtOnce)
{
    constexpr int threadCount = 4;
    constexpr int rounds = 200;
    m_manager.Initialize(false);
    std::latch start(threadCount);
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([this, &start] {
            start.arrive_and_wait();
            for (int round = 0; round < rounds; ++round) {
                m_manager.Register(&m_first);
                m_manager.Unregister(&m_first);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    // However the threads interleave, every start of the module is followed by a stop.
    for (std::size_t call = 0; call < m_calls.size(); ++call)
        EXPECT_EQ(m_calls[call], call % 2 == 0 ? "+1" : "-1");
    EXPECT_THAT(StartAndStopAgain(), IsEmpty());
}

TEST_F(LibModuleManagerTest, BlocksOtherThreadsDuringACallback)
{
    std::promise<void> isRegistered;
    std::future<void> registered = isRegistered.get_future();
    std::thread other;
    m_manager.Initialize(false);
    m_first.onInitialize = [&] {
        other = std::thread([&] {
            m_manager.Register(&m_second);
            isRegistered.set_value();
        });
        // A thread that is not blocked needs far less than 200 ms.
        EXPECT_EQ(registered.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
        m_calls.push_back("end of 1");
    };

    m_manager.Register(&m_first);

    other.join();
    EXPECT_THAT(m_calls, ElementsAre("+1", "end of 1", "+2"));
}

TEST_F(LibModuleManagerTest, IsCreatedAtLoadAndOnlyOnce)
{
    LibModuleManager* const registry = LibModuleManager::GetInstance();

    LibModuleManager::CreateInstance();

    EXPECT_NE(registry, nullptr);
    EXPECT_EQ(LibModuleManager::GetInstance(), registry);
    EXPECT_EQ(LibModuleManager::s_pInstance, registry);
}

TEST_F(LibModuleManagerTest, DoesNotReleaseItsModulesWhenDestroyed)
{
    LibModuleManager* const atLoad = std::exchange(LibModuleManager::s_pInstance, nullptr);
    LibModuleManager::CreateInstance();
    LibModuleManager::GetInstance()->Register(&m_first);
    LibModuleManager::GetInstance()->Initialize(false);
    m_calls.clear();

    LibModuleManager::ReleaseInstance();
    LibModuleManager::ReleaseInstance();

    EXPECT_EQ(LibModuleManager::GetInstance(), nullptr);
    EXPECT_THAT(m_calls, IsEmpty());
    LibModuleManager::s_pInstance = atLoad;
}

} // namespace
} // namespace Toolkit
