#include "toolkit/files/DynamicLibrary.h"
#include "toolkit/module/LibModuleManager.h"

#include "support/CapturedLog.h"
#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace Toolkit::TestSupport {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Tests the plug-in that the page about plug-ins shows.
class PlugInPageTest : public testing::Test {
protected:
    void Load()
    {
        m_plugIn = std::make_unique<DynamicLibrary>(TString<wchar_t>(TOOLKIT_TEST_PAGE_PLUG_IN));
    }
    void Unload() { m_plugIn.reset(); }

    const TempDir m_home;
    const ScopedEnvironment m_environment{"HOME", m_home.Path().native()};
    const CapturedLog m_log;
    // Release(true) drops the logger; this pointer keeps it for m_log.
    const smart_ptr<ILogger> m_logger = ILogger::GetInstance();
    LibModuleManager& m_manager = *LibModuleManager::GetInstance();
    std::unique_ptr<DynamicLibrary> m_plugIn;
};

TEST_F(PlugInPageTest, ExportsItsFunction)
{
    Load();

    using Function = int (*)(int);
    const auto getTideHeight = reinterpret_cast<Function>(m_plugIn->GetSymbol(L"GetTideHeight"));
    ASSERT_NE(getTideHeight, nullptr);
    EXPECT_EQ(getTideHeight(8), 4);
}

TEST_F(PlugInPageTest, StartsAndStopsWithTheLibrary)
{
    Load();
    EXPECT_THAT(m_log.Lines(), IsEmpty());
    m_manager.Initialize(true);
    m_manager.Release(true);
    Unload();

    EXPECT_THAT(m_log.Lines(),
                ElementsAre(IsLogLine(SeverityInfo, L"Initialize", L"tide tables are open"),
                            IsLogLine(SeverityInfo, L"Release", L"tide tables are closed")));
}

TEST_F(PlugInPageTest, StartsWhenLoadedAndStopsWhenUnloaded)
{
    m_manager.Initialize(true);
    Load();
    Unload();
    EXPECT_THAT(m_log.Lines(),
                ElementsAre(IsLogLine(SeverityInfo, L"Initialize", L"tide tables are open"),
                            IsLogLine(SeverityInfo, L"Release", L"tide tables are closed")));
    m_manager.Release(true);

    EXPECT_EQ(m_log.Lines().size(), 2u);
}

} // namespace
} // namespace Toolkit::TestSupport
