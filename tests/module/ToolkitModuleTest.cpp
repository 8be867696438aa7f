#include "toolkit/module/ToolkitModule.h"

#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/logging/FileLogger.h"
#include "toolkit/logging/Log.h"
#include "toolkit/logging/WxLogForwarder.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/system/RestartManagment.h"
#include "toolkit/system/SingleApplicationInstance.h"
#include "toolkit/system/SystemInfo.h"
#include "toolkit/system/Version.h"

#include "support/CapturedLog.h"
#include "support/RunProgram.h"
#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <wx/app.h>
#include <wx/log.h>

#include <filesystem>
#include <string>
#include <unistd.h>
#include <utility>

namespace Toolkit {
namespace {

using TestSupport::ScopedEnvironment;
using TestSupport::TempDir;

// Returns the initials of the existing process-wide objects.
std::string ExistingObjects()
{
    const std::pair<char, bool> objects[] = {
        {'L', ILogger::s_pInstance != nullptr},
        {'I', SystemInfo::s_pInstance != nullptr},
        {'V', Version::s_pInstance != nullptr},
        {'P', PathManager::s_pInstance != nullptr},
        {'R', RestartManagment::s_pInstance != nullptr},
        {'S', SingleApplicationInstance::s_pInstance != nullptr},
    };
    std::string initials;
    for (const auto& [initial, exists] : objects) {
        if (exists)
            initials.push_back(initial);
    }
    return initials;
}

class ToolkitModuleTest : public testing::Test {
protected:
    ~ToolkitModuleTest() override { EXPECT_EQ(ExistingObjects(), ""); }

    const TempDir m_directory;
    const ScopedEnvironment m_home{"HOME", m_directory.Path()};
};

TEST_F(ToolkitModuleTest, CreatesNoObjectAtLoad)
{
    EXPECT_EQ(ExistingObjects(), "");
}

TEST_F(ToolkitModuleTest, CreatesNoObjectInGetInstance)
{
    EXPECT_FALSE(ILogger::GetInstance().IsValid());
    EXPECT_FALSE(SystemInfo::GetInstance().IsValid());
    EXPECT_FALSE(Version::GetInstance().IsValid());
    EXPECT_FALSE(PathManager::GetInstance().IsValid());
    EXPECT_FALSE(RestartManagment::GetInstance().IsValid());
    EXPECT_FALSE(SingleApplicationInstance::GetInstance().IsValid());

    EXPECT_EQ(ExistingObjects(), "");
}

TEST_F(ToolkitModuleTest, CreatesAllObjectsInInitialize)
{
    LibModuleManager::GetInstance()->Initialize(true);

    EXPECT_EQ(ExistingObjects(), "LIVPRS");
    LibModuleManager::GetInstance()->Release(true);
}

TEST_F(ToolkitModuleTest, StartsWithALoggerThatDiscardsEverything)
{
    LibModuleManager::GetInstance()->Initialize(true);
    testing::internal::CaptureStdout();

    TOOLKIT_LOG(SeverityError) << L"discarded line" << ILogger::c_strLogToken3;

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    LibModuleManager::GetInstance()->Release(true);
}

TEST_F(ToolkitModuleTest, KeepsSharedObjectsAliveAfterTheRelease)
{
    LibModuleManager::GetInstance()->Initialize(true);
    const smart_ptr<Version> version = Version::GetInstance();
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    const smart_ptr<ILogger> logger = ILogger::GetInstance();

    LibModuleManager::GetInstance()->Release(true);

    EXPECT_EQ(version->ToString(), L"1.0.332.3");
    EXPECT_EQ(paths->GetApplicationName(), L"ToolkitModuleTest");
    logger->Write(L"still there");
}

TEST_F(ToolkitModuleTest, CanBeStartedAndStoppedRepeatedly)
{
    LibModuleManager* const registry = LibModuleManager::GetInstance();
    for (int cycle = 0; cycle < 20; ++cycle) {
        registry->Initialize(true);
        EXPECT_EQ(ExistingObjects(), "LIVPRS");
        EXPECT_NE(wxAppConsole::GetInstance(), nullptr);
        registry->Release(true);
        EXPECT_EQ(ExistingObjects(), "");
        EXPECT_EQ(wxAppConsole::GetInstance(), nullptr);
    }
}

TEST_F(ToolkitModuleTest, SupportsALogFileAndAForwarderAfterEveryStart)
{
    const std::wstring name = L"toolkit-module-test-" + std::to_wstring(::getpid());
    for (int cycle = 0; cycle < 2; ++cycle) {
        LibModuleManager::GetInstance()->Initialize(true);
        ILogger::SetLogger(smart_ptr<ILogger>(new FileLogger(SeverityInfo, name, 100000)));
        {
            const WxLogForwarder forwarder;
            wxLogWarning("from wxWidgets");
        }
        LibModuleManager::GetInstance()->Release(true);

        const TString<char> file = UTF8::ToUTF8(L"/tmp/" + name + L".qvlog");
        EXPECT_THAT(TestSupport::ReadWholeFile(std::string(file)),
                    testing::ContainsRegex("^1  : wx : [0-9]+ : from wxWidgets\n$"));
        std::filesystem::remove(std::string(file));
    }
}

TEST_F(ToolkitModuleTest, LetsAForwarderOutliveTheRelease)
{
    LibModuleManager::GetInstance()->Initialize(true);
    const WxLogForwarder forwarder;

    LibModuleManager::GetInstance()->Release(true);

    EXPECT_NE(wxLog::GetActiveTarget(), &forwarder);
    delete wxLog::SetActiveTarget(nullptr);
}

TEST_F(ToolkitModuleTest, CountsStartsAndStopsOfWxWidgets)
{
    LibModuleManager* const registry = LibModuleManager::GetInstance();
    registry->Initialize(true);
    registry->Initialize(true);

    registry->Release(true);
    EXPECT_NE(wxAppConsole::GetInstance(), nullptr);
    registry->Release(true);
    EXPECT_EQ(wxAppConsole::GetInstance(), nullptr);
}

TEST_F(ToolkitModuleTest, IgnoresExcessReleases)
{
    LibModuleManager* const registry = LibModuleManager::GetInstance();
    registry->Initialize(true);
    registry->Release(true);
    registry->Release(true);

    registry->Initialize(true);

    EXPECT_NE(wxAppConsole::GetInstance(), nullptr);
    registry->Release(true);
}

TEST_F(ToolkitModuleTest, WorksWithoutWxWidgets)
{
    LibModuleManager::GetInstance()->Initialize(false);

    EXPECT_EQ(wxAppConsole::GetInstance(), nullptr);
    EXPECT_EQ(ExistingObjects(), "LIVPRS");
    EXPECT_EQ(SystemInfo::GetInstance()->GetPlatform(), SystemInfo::PlatformUnix);
    EXPECT_EQ(PathManager::GetInstance()->GetApplicationName(), L"ToolkitModuleTest");
    EXPECT_FALSE(SingleApplicationInstance::GetInstance()->IsAlreadyRunning());
    LibModuleManager::GetInstance()->Release(false);
}

TEST_F(ToolkitModuleTest, DoesNotReplaceTheApplicationObjectOfTheHost)
{
    const TestSupport::ProgramResult result =
        TestSupport::RunProgram(TOOLKIT_TEST_HOST_PROGRAM, {});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "the host's own\nthe host's own\nthe host's own\n");
    EXPECT_EQ(result.errors, "");
}

// ILogger clears its pointer before it destroys the logger; the other classes clear theirs
// afterwards. So RestartManagment and the logger disappear in one step, and there is no step "L"
// after "LR". If the logger were released before RestartManagment, there would be a step "R".
TEST_F(ToolkitModuleTest, CreatesAndReleasesObjectsInFixedOrders)
{
    const TestSupport::ProgramResult result =
        TestSupport::RunProgram(TOOLKIT_TEST_ORDER_PROGRAM, {});

    EXPECT_EQ(result.output, "start: L LI LIV LIVP LIVPR LIVPRS\n"
                             "stop: LIVPR LIVR LIR LR -\n");
}

} // namespace
} // namespace Toolkit
