#include "toolkit/system/RestartManagment.h"

#include "toolkit/encoding/UTF8.h"

#include "support/CapturedLog.h"
#include "support/NoMoreProcesses.h"
#include "support/RunProgram.h"
#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <future>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using TestSupport::CapturedLog;
using TestSupport::IsLogLine;
using TestSupport::ProgramResult;
using TestSupport::RunProgram;
using TestSupport::ScopedEnvironment;
using TestSupport::TempDir;

std::vector<std::wstring> LinesOf(const std::string& text)
{
    std::vector<std::wstring> lines;
    std::wistringstream stream(UTF8::ToUNICODE(text));
    for (std::wstring line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

class RestartManagmentTest : public testing::Test {
protected:
    // Copies the program that restarts itself to `name` in the test's directory. Returns the path
    // of the copy.
    std::filesystem::path Install(const std::string& name) const
    {
        const std::filesystem::path path = m_directory.Path() / name;
        std::filesystem::copy_file(TOOLKIT_TEST_RESTART_PROGRAM, path);
        return path;
    }

    const TempDir m_directory;
    const ScopedEnvironment m_home{"HOME", m_directory.Path()};
};

TEST_F(RestartManagmentTest, HasAFixedIdentifier)
{
    EXPECT_EQ(RestartManagment::c_strUniqueIdentifer, L"{3F8A1C2D-7B4E-4d19-A6C5-0E9D2B7F4A31}");
}

TEST_F(RestartManagmentTest, DoesNotWaitForThePreviousProcess)
{
    const CapturedLog log;

    EXPECT_FALSE(RestartManagment().WaitingForPreviousProcessFinish());

    const std::wstring function = L"WaitingForPreviousProcessFinish";
    EXPECT_THAT(log.Lines(), ElementsAre(IsLogLine(SeverityInfo, 51, function,
                                                   L">>> WaitingForPreviousProcessFinish()"),
                                         IsLogLine(SeverityInfo, 101, function,
                                                   L"<<< WaitingForPreviousProcessFinish()")));
}

TEST_F(RestartManagmentTest, ReturnsFalseFromRestartProcessFinishAndLogsTheCall)
{
    const CapturedLog log;

    EXPECT_FALSE(RestartManagment().RestartProcessFinish());

    EXPECT_THAT(log.Lines(), ElementsAre(IsLogLine(SeverityInfo, 168, L"RestartProcessFinish",
                                                   L">>> RestartProcessFinish()")));
}

TEST_F(RestartManagmentTest, WritesEachPartOfALogLineSeparately)
{
    const CapturedLog log;

    RestartManagment().RestartProcessFinish();

    EXPECT_THAT(log.Pieces(),
                ElementsAre(L"2", L" ", testing::_, L" : ", L"168", L" : ", L"RestartProcessFinish",
                            L" : ", L">>> RestartProcessFinish()", L"\n"));
}

TEST_F(RestartManagmentTest, StartsTheProgramWithTheRestartArgumentOnly)
{
    const std::filesystem::path program = Install("tool");
    const std::filesystem::path pipe = m_directory.Path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const ScopedEnvironment report("TOOLKIT_TEST_REPORT", pipe);
    auto commandLine =
        std::async(std::launch::async, [&pipe] { return TestSupport::ReadWholeFile(pipe); });

    const ProgramResult result = RunProgram(program, {"-old", "arguments"});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(commandLine.get(), program.native() + "\n-restart\n");
}

TEST_F(RestartManagmentTest, DoesNotWaitForTheNewProcess)
{
    const std::filesystem::path program = Install("tool");
    const std::filesystem::path pipe = m_directory.Path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const ScopedEnvironment report("TOOLKIT_TEST_REPORT", pipe);

    // The new process cannot end before the first one opens the pipe.
    const ProgramResult result = RunProgram(program, {"-read"});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, testing::EndsWith(")=1\n" + program.native() + "\n-restart\n"));
}

TEST_F(RestartManagmentTest, LogsTheProgramAndTheResult)
{
    const std::filesystem::path program = Install("tool");
    // Not in the test's directory, which the new process may outlive.
    const ScopedEnvironment report("TOOLKIT_TEST_REPORT", "/dev/null");

    const ProgramResult result = RunProgram(program, {});

    const std::wstring function = L"ActivateRestartProcess";
    const std::wstring path = m_directory.File(L"tool");
    EXPECT_THAT(LinesOf(result.output),
                ElementsAre(IsLogLine(SeverityInfo, 114, function, L">>> ActivateRestartProcess()"),
                            IsLogLine(SeverityInfo, 155, function,
                                      L"<<< ActivateRestartProcess(" + path + L")=1")));
}

TEST_F(RestartManagmentTest, ReturnsTrueWhenTheProgramIsMissing)
{
    // ActivateRestartProcess() drops the extension, so it looks for "gone".
    const ProgramResult result = RunProgram(Install("gone.bin"), {});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, testing::EndsWith("/gone)=1\n"));
    EXPECT_EQ(result.errors, "");
}

TEST(RestartManagmentDeathTest, ReturnsTrueWhenForkFails)
{
    const auto activate = [] {
        TestSupport::AllowNoMoreProcesses();
        const bool canFork = ::fork() >= 0;
        ::_exit(!canFork && RestartManagment().ActivateRestartProcess() ? 0 : 1);
    };

    EXPECT_EXIT(activate(), testing::ExitedWithCode(0), "");
}

TEST_F(RestartManagmentTest, KeepsAReferencedObjectAfterTheRelease)
{
    RestartManagment::CreateInstance();
    const smart_ptr<RestartManagment> copy = RestartManagment::GetInstance();

    RestartManagment::ReleaseInstance();

    EXPECT_EQ(RestartManagment::s_pInstance, nullptr);
    EXPECT_FALSE(copy->RestartProcessFinish());
}

} // namespace
} // namespace Toolkit
