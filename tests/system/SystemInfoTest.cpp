#include "toolkit/system/SystemInfo.h"

#include "toolkit/encoding/UTF8.h"

#include "support/NoMoreProcesses.h"
#include "support/OutOfMemory.h"
#include "support/RunProgram.h"
#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/platinfo.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using TestSupport::ProgramResult;
using TestSupport::RunProgram;
using TestSupport::ScopedEnvironment;
using TestSupport::TempDir;

class SystemInfoTest : public testing::Test {
protected:
    static SystemInfo::Platform PlatformOf(int operatingSystem)
    {
        wxPlatformInfo description(wxPORT_BASE);
        description.SetOperatingSystemId(static_cast<wxOperatingSystemId>(operatingSystem));
        return SystemInfo(description).GetPlatform();
    }

    // Starts the program with `arguments` and returns its report.
    std::string StartAndReadReport(const TString<wchar_t>& arguments) const
    {
        EXPECT_GT(SystemInfo::StartProcess(c_startedProgram, arguments, true), 0);
        return m_directory.ReadFile(L"report");
    }

    static int WaitForExitCode(pid_t process)
    {
        int status = 0;
        EXPECT_EQ(::waitpid(process, &status, 0), process);
        EXPECT_TRUE(WIFEXITED(status));
        return WEXITSTATUS(status);
    }

    inline static const TString<wchar_t> c_startedProgram =
        UTF8::ToUNICODE(TString<char>(TOOLKIT_TEST_STARTED_PROGRAM));

    const TempDir m_directory;
    const ScopedEnvironment m_report{"TOOLKIT_TEST_REPORT", m_directory.Path() / "report"};
};

TEST_F(SystemInfoTest, MapsOperatingSystemsToPlatforms)
{
    // Values of wxOperatingSystemId.
    constexpr std::pair<int, SystemInfo::Platform> cases[] = {
        {1, SystemInfo::PlatformMac},     {2, SystemInfo::PlatformMac},
        {3, SystemInfo::PlatformMac},     {4, SystemInfo::PlatformWindows},
        {8, SystemInfo::PlatformWindows}, {60, SystemInfo::PlatformWindows},
        {64, SystemInfo::PlatformUnix},   {128, SystemInfo::PlatformUnix},
        {256, SystemInfo::PlatformUnix},  {512, SystemInfo::PlatformUnix},
        {1024, SystemInfo::PlatformUnix}, {2048, SystemInfo::PlatformUnix},
        {4096, SystemInfo::PlatformUnix}, {8128, SystemInfo::PlatformUnix},
    };
    for (const auto& [identifier, expected] : cases) {
        SCOPED_TRACE(identifier);
        EXPECT_EQ(PlatformOf(identifier), expected);
    }
}

TEST_F(SystemInfoTest, ReturnsPlatformUnknownForOtherIdentifiers)
{
    constexpr int windowsMicro = 16;
    constexpr int windowsCe = 32;
    constexpr int dos = 32768;
    constexpr int os2 = 65536;
    for (const int identifier : {0, windowsMicro, windowsCe, dos, os2, 12, 192, 4160, 8192}) {
        SCOPED_TRACE(identifier);
        EXPECT_EQ(PlatformOf(identifier), SystemInfo::PlatformUnknown);
    }
}

TEST_F(SystemInfoTest, NumbersThePlatformsFromZero)
{
    EXPECT_EQ(SystemInfo::PlatformUnknown, 0);
    EXPECT_EQ(SystemInfo::PlatformWindows, 1);
    EXPECT_EQ(SystemInfo::PlatformMac, 2);
    EXPECT_EQ(SystemInfo::PlatformUnix, 3);
}

TEST_F(SystemInfoTest, ReportsTheVersionOfTheOperatingSystem)
{
    wxPlatformInfo description(wxPORT_BASE);
    description.SetOSVersion(12, 34);
    const SystemInfo information(description);

    EXPECT_EQ(information.GetOSMajorVersion(), 12);
    EXPECT_EQ(information.GetOSMinorVersion(), 34);
}

TEST_F(SystemInfoTest, DescribesTheRunningSystemByDefault)
{
    const SystemInfo information;
    utsname system{};
    int major = 0;
    int minor = 0;
    ASSERT_EQ(::uname(&system), 0);
    ASSERT_EQ(std::sscanf(system.release, "%d.%d", &major, &minor), 2);

    EXPECT_EQ(information.GetPlatform(), SystemInfo::PlatformUnix);
    EXPECT_EQ(information.GetOSMajorVersion(), major);
    EXPECT_EQ(information.GetOSMinorVersion(), minor);
}

TEST_F(SystemInfoTest, ReturnsFixedValuesForTheUsersRights)
{
    EXPECT_FALSE(SystemInfo::HasAdministratorCredentials());
    EXPECT_FALSE(SystemInfo::HasPowerUserCredentials());
    EXPECT_TRUE(SystemInfo::CanElevateCredentialsUsingUAC());
}

TEST_F(SystemInfoTest, PassesTheProgramPathAndTheArgumentTokens)
{
    const std::pair<const wchar_t*, std::string> cases[] = {
        {L"", ""},
        {L" \t ", ""},
        {L"one two", "one\ntwo\n"},
        {L"  one\ttwo  ", "one\ntwo\n"},
        {L"\"one two\" three", "one two\nthree\n"},
        {L"\"\" x", "\nx\n"},
        {L"a\"b c\"", "a\"b\nc\"\n"},
        {L"x \"open end", "x\n"},
        {L"-restart", "-restart\n"},
        {L"gr\x00FC\x00DF \x4E2D\x1F600", "gr\xC3\xBC\xC3\x9F\n\xE4\xB8\xAD\xF0\x9F\x98\x80\n"},
    };
    for (const auto& [arguments, expected] : cases) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(StartAndReadReport(arguments),
                  TOOLKIT_TEST_STARTED_PROGRAM "\n" + expected + "0 inherited files\n");
    }
}

TEST_F(SystemInfoTest, StartsAProgramWhosePathIsNotAscii)
{
    const std::filesystem::path program = m_directory.Path() / "gr\xC3\xBC\xC3\x9F \xE4\xB8\xAD";
    std::filesystem::copy_file(TOOLKIT_TEST_STARTED_PROGRAM, program);

    EXPECT_GT(SystemInfo::StartProcess(UTF8::ToUNICODE(program.native()), L"", true), 0);

    EXPECT_EQ(m_directory.ReadFile(L"report"), program.native() + "\n0 inherited files\n");
}

TEST_F(SystemInfoTest, ClosesInheritedFilesInTheNewProcess)
{
    const int inheritable = ::open("/dev/null", O_RDONLY);
    const int higher = ::fcntl(inheritable, F_DUPFD, 500);

    const std::string report = StartAndReadReport(L"");

    EXPECT_EQ(report, TOOLKIT_TEST_STARTED_PROGRAM "\n0 inherited files\n");
    EXPECT_EQ(::fcntl(higher, F_GETFD), 0);
    ::close(higher);
    ::close(inheritable);
}

TEST_F(SystemInfoTest, ReapsTheProcessThatItWaitsFor)
{
    const int process = SystemInfo::StartProcess(c_startedProgram, L"", true);

    EXPECT_GT(process, 0);
    EXPECT_EQ(::waitpid(process, nullptr, 0), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(SystemInfoTest, DoesNotWaitForTheProcessUnlessAsked)
{
    // The program cannot end before its report is read.
    const std::filesystem::path pipe = m_directory.Path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const ScopedEnvironment report("TOOLKIT_TEST_REPORT", pipe);

    const int process = SystemInfo::StartProcess(c_startedProgram, L"", false);

    ASSERT_GT(process, 0);
    EXPECT_EQ(TestSupport::ReadWholeFile(pipe),
              TOOLKIT_TEST_STARTED_PROGRAM "\n0 inherited files\n");
    EXPECT_EQ(WaitForExitCode(process), 0);
}

TEST_F(SystemInfoTest, ReportsAFailedExecInTheExitStatus)
{
    const std::pair<TString<wchar_t>, int> cases[] = {
        {m_directory.File(L"missing"), ENOENT},
        {m_directory.WriteFile(L"text", "no program"), EACCES},
        {m_directory.File(L""), EACCES},
        {L"", ENOENT},
        {L"true", ENOENT}, // PATH is not searched
        {TString<wchar_t>(std::wstring(5000, L'x')), ENAMETOOLONG},
    };
    for (const auto& [path, expected] : cases) {
        SCOPED_TRACE(path);
        const int process = SystemInfo::StartProcess(path, L"x", false);
        ASSERT_GT(process, 0);
        EXPECT_EQ(WaitForExitCode(process), expected);
    }
}

TEST_F(SystemInfoTest, ReturnsTheProcessIdEvenWhenExecFails)
{
    EXPECT_GT(SystemInfo::StartProcess(m_directory.File(L"missing"), L"", true), 0);
}

TEST_F(SystemInfoTest, ReturnsMinusOneWhenSigchldIsIgnored)
{
    const auto previous = ::signal(SIGCHLD, SIG_IGN);

    EXPECT_EQ(SystemInfo::StartProcess(c_startedProgram, L"", true), -1);
    ::signal(SIGCHLD, previous);
}

TEST(SystemInfoDeathTest, ReturnsTheErrorNumberWhenForkFails)
{
    const auto start = [](bool wait) {
        TestSupport::AllowNoMoreProcesses();
        ::_exit(SystemInfo::StartProcess(L"/bin/true", L"", wait));
    };

    EXPECT_EXIT(start(false), testing::ExitedWithCode(EAGAIN), "");
    EXPECT_EXIT(start(true), testing::ExitedWithCode(EAGAIN), "");
}

TEST_F(SystemInfoTest, ReturnsEnomemWhenOutOfMemory)
{
    const TString<wchar_t> path = m_directory.File(L"missing program");
    const TString<wchar_t> arguments = L"a-rather-long-argument another-rather-long-argument";
    int failures = 0;
    for (bool hasFailed = true; hasFailed;) {
        const TestSupport::FailingAllocation failing(failures);
        const int result = SystemInfo::StartProcess(path, arguments, true);
        hasFailed = failing.HasFailed();
        if (hasFailed) {
            ASSERT_EQ(result, ENOMEM);
            ++failures;
        }
    }

    EXPECT_GT(failures, 3);
}

TEST_F(SystemInfoTest, FlushesOutputAndDestroysStaticsInTheParentOnly)
{
    const ProgramResult result = RunProgram(TOOLKIT_TEST_STARTING_PROGRAM, {});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "buffered\ndestroyed\n");
}

TEST_F(SystemInfoTest, DoesNotHangWhileOtherThreadsAllocate)
{
    std::atomic<bool> stop{false};
    std::vector<std::thread> allocating;
    for (int number = 0; number < 4; ++number) {
        allocating.emplace_back([&stop] {
            while (!stop)
                std::vector<std::string>(100, std::string(100, 'x')).clear();
        });
    }

    int ended = 0;
    for (int start = 0; start < 300; ++start)
        ended += SystemInfo::StartProcess(L"/nonexistent/program", L"a \"b c\" d", true) > 0;

    stop = true;
    for (std::thread& thread : allocating)
        thread.join();
    EXPECT_EQ(ended, 300);
}

TEST_F(SystemInfoTest, KeepsAReferencedObjectAfterTheRelease)
{
    SystemInfo::CreateInstance();
    const smart_ptr<SystemInfo> copy = SystemInfo::GetInstance();

    EXPECT_EQ(copy.Get(), SystemInfo::s_pInstance->Get());
    SystemInfo::ReleaseInstance();
    EXPECT_EQ(SystemInfo::s_pInstance, nullptr);
    EXPECT_EQ(copy->GetPlatform(), SystemInfo::PlatformUnix);
}

TEST(SystemInfoVersionTest, NamesWxWidgetsAndItsVersion)
{
    EXPECT_EQ(SystemInfo::GetFrameworkVersion().find(L"wxWidgets 3."), 0u);
}

} // namespace
} // namespace Toolkit
