#include "toolkit/logging/FileLogger.h"
#include "toolkit/logging/Log.h"
#include "toolkit/threading/Thread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "RunningCommand.h"
#include "ToolFixture.h"

namespace Toolkit::TestSupport {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

// Fixture with a log that the tests overwrite in place, as a logger does.
class LogFollowTest : public ToolFixture {
protected:
    LogFollowTest() : m_path(ToolFixture::Write(L"app.qvlog", "2 1000 : 1 : f : first\n")) {}

    // Writes `text` over the bytes at `offset`, and returns the offset at which `text` ends.
    long WriteAt(long offset, const std::string& text) const
    {
        std::fstream file(m_path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(offset);
        file << text;
        return offset + static_cast<long>(text.size());
    }

    long Append(const std::string& text) const
    {
        return WriteAt(static_cast<long>(std::filesystem::file_size(m_path)), text);
    }

    // Returns "S" for a process that sleeps, and "Z" for one that has ended.
    static std::string ReadState(pid_t process)
    {
        std::string pid;
        std::string name;
        std::string state;
        std::ifstream("/proc/" + std::to_string(process) + "/stat") >> pid >> name >> state;
        return state;
    }

    // Returns once the process sleeps, which the command does until it reads the log again, or has
    // ended.
    static void AwaitSleep(pid_t process)
    {
        for (std::string state; state != "S" && state != "Z";)
            state = ReadState(process);
    }

    // Returns once the process has read the log: it sleeps before and after reading.
    static void AwaitPoll(pid_t process)
    {
        const long first = CountSleeps(process);
        while (CountSleeps(process) < first + 2 && ReadState(process) != "Z")
            Thread::Sleep(1);
    }

    static long CountSleeps(pid_t process)
    {
        std::ifstream status("/proc/" + std::to_string(process) + "/status");
        std::string name;
        while (status >> name && name != "voluntary_ctxt_switches:") {
        }
        long count = 0;
        status >> count;
        return count;
    }

    // Suspends the command while `write` runs, so that the command sees all changes together.
    template <typename Write>
    static void WriteWhileStopped(RunningCommand& command, Write write)
    {
        AwaitSleep(command.GetProcessId());
        ::kill(command.GetProcessId(), SIGSTOP);
        int status = 0;
        ::waitpid(command.GetProcessId(), &status, WUNTRACED);
        write();
        ::kill(command.GetProcessId(), SIGCONT);
    }

    const std::string m_path;
};

// Only the fastest of several lines counts, so a busy machine does not matter.
TEST_F(LogFollowTest, ShowsANewLineWithin300Milliseconds)
{
    constexpr int lines = 5;
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("first\n");

    auto fastest = std::chrono::steady_clock::duration::max();
    for (int i = 2; i < 2 + lines; ++i) {
        const std::string number = std::to_string(i);
        const auto written = std::chrono::steady_clock::now();
        Append("2 " + number + "000 : 1 : f : line\n");
        command.ReadUntil(number + "000 info f:1 line\n");
        fastest = std::min(fastest, std::chrono::steady_clock::now() - written);
    }

    EXPECT_LT(fastest, std::chrono::milliseconds(300));
}

TEST_F(LogFollowTest, WaitsForTheEndOfALine)
{
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("first\n");

    Append("2 2000 : 1 : f : second li");
    AwaitPoll(command.GetProcessId());
    Append("ne\n2 3000 : 1 : f : third\n");

    EXPECT_THAT(command.ReadUntil("third\n"), HasSubstr("2000 info f:1 second line\n3000 info"));
}

TEST_F(LogFollowTest, ContinuesAtTheBeginningWhenTheLogWraps)
{
    Append("2 2000 : 1 : f : second line\n2 3000 : 1 : f : third line\n");
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("third line\n");

    const long end = WriteAt(0, "2 9000 : 1 : f : wrapped\n");
    command.ReadUntil("9000 info f:1 wrapped\n");
    WriteAt(end, "2 9500 : 1 : f : next\n");

    EXPECT_THAT(command.ReadUntil("next\n"), EndsWith("wrapped\n9500 info f:1 next\n"));
}

TEST_F(LogFollowTest, PrintsEachLineOnceWhenTheLogWrapsWithinASecond)
{
    Append("2 1010 : 1 : f : second line\n2 1020 : 1 : f : line\n2 1200 : 1 : f : third line\n");
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("third line\n");

    const long end = WriteAt(0, "2 1300 : 1 : f : again\n");
    command.ReadUntil("1300 info f:1 again\n");
    WriteAt(end, "2 1400 : 1 : f : next\n");

    EXPECT_THAT(command.ReadUntil("next\n"),
                EndsWith("third line\n1300 info f:1 again\n1400 info f:1 next\n"));
}

TEST_F(LogFollowTest, PrintsTheEndOfARoundBeforeTheNextRound)
{
    const long end =
        WriteAt(0, "2 8000 : 1 : f : " + std::string(100, 'x') + "\n2 9000 : 1 : f : newest\n");
    WriteAt(end, "2 3000 : 1 : f : oldest\n2 4000 : 1 : f : old\n");
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("newest\n");

    WriteWhileStopped(command, [this, end] {
        WriteAt(end, "2 9100 : 1 : f : final.\n");
        WriteAt(0, "2 9900 : 1 : f : anew..\n");
    });

    EXPECT_THAT(command.ReadUntil("anew..\n"),
                EndsWith("newest\n9100 info f:1 final.\n9900 info f:1 anew..\n"));
}

TEST_F(LogFollowTest, PrintsALogRewrittenWithMoreLinesInOrder)
{
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("first\n");

    WriteWhileStopped(command, [this] {
        ToolFixture::Write(L"app.qvlog", "2 2000 : 1 : f : second\n2 2010 : 1 : f : third\n"
                                         "2 2020 : 1 : f : fourth\n");
    });
    command.ReadUntil("fourth\n");
    Append("2 3000 : 1 : f : end\n");

    EXPECT_THAT(command.ReadUntil("end\n"),
                EndsWith("first\n2000 info f:1 second\n2010 info f:1 third\n"
                         "2020 info f:1 fourth\n3000 info f:1 end\n"));
}

// A thread may wait for seconds between reading the tick count and writing the line.
TEST_F(LogFollowTest, PrintsALateLineInAWrappedLog)
{
    const long end = WriteAt(0, "2 9000 : 1 : f : newest\n");
    WriteAt(end, "2 3000 : 1 : f : oldest\n2 4000 : 1 : f : old\n2 5000 : 1 : f : old\n");
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("newest\n");

    WriteAt(end, "2 7000 : 1 : g : late line\n2 9500 : 1 : f : next\n");

    EXPECT_THAT(command.ReadUntil("next\n"),
                EndsWith("newest\n7000 info g:1 late line\n9500 info f:1 next\n"));
}

TEST_F(LogFollowTest, ContinuesInAWrappedLog)
{
    const long end = WriteAt(0, "2 9000 : 1 : f : newest\n");
    WriteAt(end, "rest\n2 3000 : 1 : f : oldest\n2 4000 : 1 : f : old\n");
    RunningCommand command({"log", "--follow", m_path});
    EXPECT_EQ(command.ReadUntil("newest\n"), "- cut - rest\n3000 info f:1 oldest\n"
                                             "4000 info f:1 old\n9000 info f:1 newest\n");

    WriteAt(end, "2 9500 : 1 : f : next\n");

    EXPECT_THAT(command.ReadUntil("next\n"), EndsWith("newest\n9500 info f:1 next\n"));
}

TEST_F(LogFollowTest, ContinuesInATruncatedLog)
{
    Append("2 2000 : 1 : f : second\n");
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("second\n");

    std::filesystem::resize_file(m_path, 0);
    Append("2 3000 : 1 : f : third\n");
    command.ReadUntil("3000 info f:1 third\n");
    Append("2 4000 : 1 : f : fourth\n");

    EXPECT_THAT(command.ReadUntil("fourth\n"), EndsWith("third\n4000 info f:1 fourth\n"));
}

TEST_F(LogFollowTest, ContinuesInAFallbackFile)
{
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("first\n");

    ToolFixture::Write(L"app-1234560.qvlog", "2 5000 : 1 : f : fallback\n");

    EXPECT_THAT(command.ReadUntil("5000 info f:1 fallback\n"), HasSubstr("app-1234560.qvlog\n"));
}

TEST_F(LogFollowTest, IgnoresAFallbackFileOfAnotherUser)
{
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("first\n");

    const std::string other = PathOf("other.qvlog");
    ToolFixture::Write(L"other.qvlog", "2 5000 : 1 : f : forged\n");
    if (::chown(other.c_str(), 12345, 12345) != 0)
        GTEST_SKIP() << "only root may change the owner of a file";
    std::filesystem::rename(other, PathOf("app-1234560.qvlog"));
    ToolFixture::Write(L"app-1234570.qvlog", "2 6000 : 1 : f : fallback\n");

    EXPECT_THAT(command.ReadUntil("6000 info f:1 fallback\n"), Not(HasSubstr("forged")));
}

TEST_F(LogFollowTest, ContinuesInAFileThatReplacesTheLog)
{
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("first\n");

    std::filesystem::remove(m_path);
    ToolFixture::Write(L"app.qvlog", "2 50 : 1 : f : anew\n");

    command.ReadUntil("50 info f:1 anew\n");
}

TEST_F(LogFollowTest, AppliesTheFilters)
{
    RunningCommand command({"log", "--follow", "-s", "error", m_path});

    Append("2 2000 : 1 : f : second\n0 3000 : 1 : f : third\n");

    EXPECT_EQ(command.ReadUntil("third\n"), "3000 error f:1 third\n");
}

TEST_F(LogFollowTest, SucceedsWhenInterrupted)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        RunningCommand command({"log", "--follow", m_path});
        command.ReadUntil("first\n");
        EXPECT_EQ(command.SignalAndWait(signal), 0);
    }
}

TEST_F(LogFollowTest, EndsWhenItsOutputIsClosed)
{
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("first\n");

    command.CloseOutput();

    EXPECT_EQ(command.Wait(), -SIGPIPE);
}

TEST_F(LogFollowTest, PrintsAllLinesOfAMessageInAWrappedLog)
{
    const long end = WriteAt(0, "2 9000 : 1 : f : newest\n");
    WriteAt(end, "2 3000 : 1 : f : the oldest line\n2 4000 : 1 : f : old\n");
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("newest\n");

    WriteAt(end, "2 9500 : 1 : f : two\nlines\n");

    EXPECT_THAT(command.ReadUntil("lines\n"), EndsWith("newest\n9500 info f:1 two\n    lines\n"));
}

// Each round may end before the previous one did, so the remains of several older lines may follow
// the newest line.
TEST_F(LogFollowTest, PrintsNoRemainsOfOlderLinesAtTheEndOfALog)
{
    const long end = WriteAt(0, "2 9000 : 1 : f : newest\n");
    WriteAt(end, "2 4000 : 1 : f : the last line of a round\nlast line of an older round\n");
    RunningCommand command({"log", "--follow", m_path});
    command.ReadUntil("newest\n");

    WriteAt(end, "2 9500 : 1 : f : last\n");
    command.ReadUntil("f:1 last\n");
    WriteAt(0, "2 9900 : 1 : f : first.\n");

    EXPECT_THAT(command.ReadUntil("first.\n"),
                EndsWith("newest\n9500 info f:1 last\n9900 info f:1 first.\n"));
}

// The logger's file has room for about 20 of the 200 lines.
TEST_F(LogFollowTest, ShowsAllLinesOfALoggerThatWrapsOften)
{
    constexpr int lines = 200;
    constexpr unsigned int limit = 1000;
    const TString<wchar_t> name = L"toolkit-follow-test-" + std::to_wstring(::getpid());
    smart_ptr<FileLogger> logger(new FileLogger(SeverityVerbose, name, limit));
    const std::filesystem::path path = std::wstring(logger->GetPath(5000));
    ILogger& log = *logger;
    const auto write = [&log](int number) {
        log.Write(L"2 " + std::to_wstring(1000 * number) + L" : 1 : f : a text of some length " +
                  std::to_wstring(number) + L" end\n");
    };
    write(1);
    RunningCommand command({"log", "--follow", path});

    std::string expected = "1000 info f:1 a text of some length 1 end\n";
    command.ReadUntil(expected);
    for (int i = 2; i <= lines; ++i) {
        write(i);
        const std::string number = std::to_string(i);
        expected += number + "000 info f:1 a text of some length " + number + " end\n";
        EXPECT_EQ(command.ReadUntil(" " + number + " end\n"), expected);
        ASSERT_FALSE(HasFailure());
    }
    logger = smart_ptr<FileLogger>();
    std::filesystem::remove(path);
}

} // namespace
} // namespace Toolkit::TestSupport
