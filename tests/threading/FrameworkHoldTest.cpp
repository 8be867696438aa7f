#include "toolkit/threading/FrameworkHold.h"

#include "toolkit/module/LibModuleManager.h"
#include "toolkit/threading/Thread.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/init.h>

#include <memory>
#include <optional>
#include <thread>

namespace Toolkit {
namespace {

bool FrameworkRuns()
{
    return wxAppConsole::GetInstance() != nullptr;
}

TEST(FrameworkHoldTest, KeepsWxWidgetsRunningAsLongAsAnyHold)
{
    std::optional<FrameworkHold> first(std::in_place);
    std::optional<FrameworkHold> second(std::in_place);

    first.reset();
    EXPECT_TRUE(FrameworkRuns());
    second.reset();
    EXPECT_FALSE(FrameworkRuns());
}

TEST(FrameworkHoldTest, CanHoldWxWidgetsAgain)
{
    for (int i = 0; i < 3; ++i) {
        const FrameworkHold hold;
        EXPECT_TRUE(FrameworkRuns());
    }
    EXPECT_FALSE(FrameworkRuns());
}

TEST(FrameworkHoldTest, LetsAThreadOutliveTheRelease)
{
    class Idle : public Thread {
        int DoWork() override { return 0; }
    };
    LibModuleManager::GetInstance()->Initialize(true);
    std::optional<Idle> thread(std::in_place);

    LibModuleManager::GetInstance()->Release(true);
    EXPECT_TRUE(FrameworkRuns());
    thread.reset();
    EXPECT_FALSE(FrameworkRuns());
}

TEST(FrameworkHoldTest, WaitsForTheNextEndWhenReleasedOnAnotherThread)
{
    auto hold = std::make_unique<FrameworkHold>();
    std::thread([&hold] { hold.reset(); }).join();
    EXPECT_TRUE(FrameworkRuns());

    hold = std::make_unique<FrameworkHold>();
    hold.reset();
    EXPECT_FALSE(FrameworkRuns());
}

TEST(FrameworkHoldTest, MakesUpForSeveralEndsOnAnotherThread)
{
    auto first = std::make_unique<FrameworkHold>();
    auto second = std::make_unique<FrameworkHold>();
    auto third = std::make_unique<FrameworkHold>();
    std::thread([&] {
        first.reset();
        second.reset();
    }).join();
    EXPECT_TRUE(FrameworkRuns());

    third.reset();
    EXPECT_FALSE(FrameworkRuns());
}

TEST(FrameworkHoldTest, LeavesTheApplicationOfTheProgramAlone)
{
    // wxWidgets owns the application object from now on.
    auto* const application = new wxAppConsole();
    wxAppConsole::SetInstance(application);
    wchar_t name[] = L"program";
    wchar_t* arguments[] = {name, nullptr};
    int count = 1;
    ASSERT_TRUE(wxEntryStart(count, arguments));

    {
        const FrameworkHold hold;
        EXPECT_EQ(wxAppConsole::GetInstance(), application);
    }
    EXPECT_EQ(wxAppConsole::GetInstance(), application);
    wxEntryCleanup();
}

} // namespace
} // namespace Toolkit
