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

bool IsWxWidgetsRunning()
{
    return wxAppConsole::GetInstance() != nullptr;
}

TEST(FrameworkHoldTest, KeepsWxWidgetsRunningUntilTheLastRelease)
{
    std::optional<FrameworkHold> first(std::in_place);
    std::optional<FrameworkHold> second(std::in_place);

    first.reset();
    EXPECT_TRUE(IsWxWidgetsRunning());
    second.reset();
    EXPECT_FALSE(IsWxWidgetsRunning());
}

TEST(FrameworkHoldTest, CanHoldWxWidgetsAgain)
{
    for (int i = 0; i < 3; ++i) {
        const FrameworkHold hold;
        EXPECT_TRUE(IsWxWidgetsRunning());
    }
    EXPECT_FALSE(IsWxWidgetsRunning());
}

TEST(FrameworkHoldTest, KeepsWxWidgetsRunningWhileAThreadExists)
{
    class Idle : public Thread {
        int DoWork() override { return 0; }
    };
    LibModuleManager::GetInstance()->Initialize(true);
    std::optional<Idle> thread(std::in_place);

    LibModuleManager::GetInstance()->Release(true);
    EXPECT_TRUE(IsWxWidgetsRunning());
    thread.reset();
    EXPECT_FALSE(IsWxWidgetsRunning());
}

TEST(FrameworkHoldTest, StopsWxWidgetsLaterWhenReleasedOnAnotherThread)
{
    auto hold = std::make_unique<FrameworkHold>();
    std::thread([&hold] { hold.reset(); }).join();
    EXPECT_TRUE(IsWxWidgetsRunning());

    hold = std::make_unique<FrameworkHold>();
    hold.reset();
    EXPECT_FALSE(IsWxWidgetsRunning());
}

TEST(FrameworkHoldTest, StopsWxWidgetsAfterSeveralReleasesOnAnotherThread)
{
    auto first = std::make_unique<FrameworkHold>();
    auto second = std::make_unique<FrameworkHold>();
    auto third = std::make_unique<FrameworkHold>();
    std::thread([&] {
        first.reset();
        second.reset();
    }).join();
    EXPECT_TRUE(IsWxWidgetsRunning());

    third.reset();
    EXPECT_FALSE(IsWxWidgetsRunning());
}

TEST(FrameworkHoldTest, KeepsTheProgramsApplicationObject)
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
