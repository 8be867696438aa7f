#include "toolkit/encoding/UTF8.h"
#include "toolkit/ipc/IPCClient.h"

#include "support/Sanitizers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <string>
#include <sys/file.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "HostWithPlugIns.h"
#include "ProgramOnTerminal.h"

namespace Toolkit::TestSupport {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

// Calls `work` with each number below `count`, each on its own thread.
void RunInThreads(int count, const std::function<void(int)>& work)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back(work, i);
    for (std::thread& thread : threads)
        thread.join();
}

// Returns a time limit of `seconds`, or four times as long under a sanitizer.
std::chrono::seconds GetTimeLimit(int seconds)
{
#ifdef TOOLKIT_SANITIZER
    return std::chrono::seconds(4 * seconds);
#else
    return std::chrono::seconds(seconds);
#endif
}

bool IsDone(const std::string& line)
{
    return line.find(": done in ") != std::string::npos;
}

class HostServerTest : public HostWithPlugIns {
protected:
    // Writes an archive of `count` entries: "entry 7" contains "line 7".
    std::string WriteNumberedLines(int count) const
    {
        ZipContent content;
        for (int i = 0; i < count; ++i)
            content.push_back({L"entry " + std::to_wstring(i), "line " + std::to_string(i) + "\n"});
        WriteZip(m_directory.File(L"numbers.zip"), content);
        return File("numbers.zip");
    }
};

TEST_F(HostServerTest, ReportsCommandsThatCannotBeHandedOver)
{
    const ServingHost host(m_host);

    const ProgramResult noFile = m_host.Run({"list"});
    EXPECT_EQ(noFile.exitCode, 2);
    EXPECT_THAT(noFile.errors,
                testing::StartsWith("host: The command cannot be handed over: the option -out "
                                    "or its value is missing\nusage: host "));

    const ProgramResult quotes = m_host.Run({"find", "-pattern", "a \"b", "-out", "x"});
    EXPECT_EQ(quotes.exitCode, 1);
    EXPECT_EQ(quotes.errors,
              "host: No argument may begin with a quote, or contain both spaces and quotes.\n");
}

TEST_F(HostServerTest, FailsWithoutAServingHost)
{
    for (const Arguments& arguments : {Arguments{"list", "-out", "x"}, Arguments{"-quit"}}) {
        const ProgramResult result = m_host.Run(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.errors, "host: No host is serving. Start one with -serve.\n");
    }
}

TEST_F(HostServerTest, LetsOnlyTheFirstHostServe)
{
    ServingHost host(m_host);

    const ProgramResult result = m_host.Run({"-serve"});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, c_handedOver);
    EXPECT_EQ(host.AwaitLine("Already serving"), "Already serving");
    Quit(host);
}

// Not even root can create a file in /proc.
TEST_F(HostServerTest, AcceptsCommandsWithAReadOnlyHome)
{
    const ScopedEnvironment home("HOME", "/proc");
    const std::string archive = WriteArchive();
    ServingHost host(m_host);

    EXPECT_EQ(RunForResult(host, {"list", "-archive", archive}),
              "9\tfolder/two.txt\n19\tone.txt\n");
    EXPECT_EQ(m_host.Run({"-serve"}).output, c_handedOver);

    Quit(host);
    EXPECT_FALSE(std::filesystem::exists(host.Socket()));
}

TEST_F(HostServerTest, ReplacesAKilledHostWithAReadOnlyHome)
{
    const ScopedEnvironment home("HOME", "/proc");
    ServingHost killed(m_host);
    killed.Send(SIGKILL);
    killed.WaitForExitCode();

    ServingHost next(m_host);

    Quit(next);
    EXPECT_FALSE(std::filesystem::exists(next.Socket()));
}

// Sends the longest message that a server accepts.
bool SendLongestMessage(const ServingHost& host)
{
    return IPCClient::Connect(UTF8::ToUNICODE(host.Socket()), std::wstring(16 << 20, L'x'));
}

TEST_F(HostServerTest, RejectsACommandThatIsTooLong)
{
    const std::string archive = WriteArchive();
    ServingHost host(m_host);

    EXPECT_TRUE(SendLongestMessage(host));

    EXPECT_EQ(RunForResult(host, {"list", "-archive", archive}),
              "9\tfolder/two.txt\n19\tone.txt\n");
    Quit(host);
    EXPECT_THAT(m_host.Log(),
                HasSubstr("A command was ignored: it has more than 1,048,576 characters"));
}

// Limits the address space of `process`, as `ulimit -v` does, to what it uses now and `spareBytes`
// more.
class ScopedMemoryLimit {
public:
    ScopedMemoryLimit(pid_t process, rlim_t spareBytes) : m_process(process)
    {
        std::ifstream statm("/proc/" + std::to_string(process) + "/statm");
        rlim_t pages = 0;
        statm >> pages;
        Set(pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + spareBytes);
    }
    ~ScopedMemoryLimit() { Set(RLIM_INFINITY); }

    ScopedMemoryLimit(const ScopedMemoryLimit&) = delete;
    ScopedMemoryLimit& operator=(const ScopedMemoryLimit&) = delete;

private:
    void Set(rlim_t bytes) const
    {
        const rlimit limit{bytes, RLIM_INFINITY};
        EXPECT_EQ(::prlimit(m_process, RLIMIT_AS, &limit, nullptr), 0);
    }

    const pid_t m_process;
};

TEST_F(HostServerTest, SurvivesAMessageThatDoesNotFitIntoMemory)
{
#ifdef TOOLKIT_SANITIZER
    GTEST_SKIP() << "the limit also applies to the sanitizer's own memory, so the process ends";
#endif
    const std::string archive = WriteArchive();
    ServingHost host(m_host);

    // Waits until the event loop runs: wxWidgets could not start it under the limit.
    RunForResult(host, {"list", "-archive", archive});

    for (const rlim_t mebibytes :
         std::initializer_list<rlim_t>{16, 48, 80, 112, 144, 176, 208, 240, 272}) {
        SCOPED_TRACE(mebibytes);
        {
            const ScopedMemoryLimit limit(host.GetProcessId(), mebibytes << 20);
            SendLongestMessage(host);
        }
        ASSERT_EQ(RunForResult(host, {"list", "-archive", archive}),
                  "9\tfolder/two.txt\n19\tone.txt\n");
    }
    Quit(host);
}

// The test holds a lock on the second log, like a second host that is still running.
TEST_F(HostServerTest, ReportsTheSeparateLogOfAThirdHost)
{
    Write("notes.txt", "clear\n");
    const std::string settings = Write("other.ini", "[Text]\nfile=notes.txt\nfind=clear\n");
    const std::string second = "/tmp/" + m_host.UniqueName() + "-second";
    std::ofstream(second + ".qvlog") << "the second host's\n";
    const int descriptor = ::open((second + ".qvlog").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(descriptor, LOCK_EX | LOCK_NB), 0);
    const ServingHost host(m_host);

    const ProgramResult result = m_host.Run({"-config", settings});

    const std::string label = "\nLog                     ";
    const std::string rest = result.output.substr(result.output.find(label) + label.size());
    const std::string log = rest.substr(0, rest.find('\n'));
    EXPECT_THAT(log, testing::MatchesRegex(second + "-[0-9]+\\.qvlog"));
    EXPECT_THAT(ReadWholeFile(log), HasSubstr("1 of 1 lines"));
    EXPECT_EQ(ReadWholeFile(second + ".qvlog"), "the second host's\n");
    ::close(descriptor);
    std::filesystem::remove(log);
    std::filesystem::remove(second + ".qvlog");
}

// Runs 200 commands, eight processes at a time.
TEST_F(HostServerTest, RunsEachOfManyConcurrentCommands)
{
    constexpr int processes = 8;
    constexpr int commands = 200;
    const std::string archive = WriteNumberedLines(commands);
    ServingHost host(m_host);

    RunInThreads(processes, [&](int process) {
        for (int i = process; i < commands; i += processes) {
            const std::string line = "^line " + std::to_string(i) + "$";
            const ProgramResult result = m_host.Run(
                {"search", "-archive", archive, "-pattern", line, "-out", File(std::to_string(i))});
            EXPECT_EQ(result.exitCode, 0) << result.errors;
        }
    });
    EXPECT_EQ(m_host.Run({"-quit"}).exitCode, 0);
    const std::vector<std::string> shown = host.AwaitEnd();

    for (int i = 0; i < commands; ++i) {
        const std::string number = std::to_string(i);
        EXPECT_EQ(ReadWholeFile(File(number)), "entry " + number + ":1: line " + number + "\n");
    }
    EXPECT_EQ(std::count_if(shown.begin(), shown.end(), IsDone), commands);
    EXPECT_EQ(host.WaitForExitCode(), 0);
    EXPECT_THAT(m_host.Log(),
                AllOf(HasSubstr(" : 200 search: done in "), Not(HasSubstr("failed"))));
}

// Some commands reach the host while it is ending. It still runs each one that was reported as
// handed over.
TEST_F(HostServerTest, RunsEachHandedOverCommandWhileEnding)
{
    constexpr int processes = 8;
    const std::string archive = WriteArchive();
    ServingHost host(m_host);
    std::vector<std::vector<std::string>> results(processes);

    RunInThreads(processes + 1, [&](int process) {
        if (process == processes) { // the additional thread, which ends the host
            host.AwaitLine("20 list: done");
            EXPECT_EQ(m_host.Run({"-quit"}).exitCode, 0);
            host.AwaitEnd();
            return;
        }
        for (int i = 0;; ++i) {
            const std::string result = File(std::to_string(process) + "-" + std::to_string(i));
            if (m_host.Run({"list", "-archive", archive, "-out", result}).exitCode != 0)
                return;
            results[static_cast<std::size_t>(process)].push_back(result);
        }
    });

    EXPECT_EQ(host.WaitForExitCode(), 0);
    for (const std::vector<std::string>& processResults : results) {
        for (const std::string& result : processResults)
            EXPECT_TRUE(std::filesystem::exists(result)) << result;
    }
}

TEST_F(HostServerTest, ShowsTheProgressOfALongCommand)
{
    const ServingHost host(m_host);

    HandOver({"wait", "-until", File("go")});

    EXPECT_EQ(host.AwaitLine("1 wait: "), "1 wait: started");
    EXPECT_THAT(host.AwaitLine("1 wait: "), testing::MatchesRegex("1 wait: [0-9]+ rounds"));
    Write("go", "");
    EXPECT_THAT(host.AwaitOutcome("1 wait"), testing::StartsWith("done in "));
}

TEST_F(HostServerTest, ShowsAProgressBarThatTheNextLineReplaces)
{
    const ScopedEnvironment terminal("TERM", "xterm");
    const std::string archive = WriteArchive();
    ProgramOnTerminal host(m_host.Path(), {"-serve", "-quiet"});
    host.ReadUntil("Serving at ");

    HandOver({"list", "-archive", archive});

    EXPECT_THAT(host.ReadUntil("1 list: done in "),
                EndsWith("\r\x1B[K1 list: [####################] 100 % 2 of 2 entries"
                         "\r\x1B[K1 list: done in "));
}

TEST_F(HostServerTest, ShowsACountWhenTheTotalIsUnknown)
{
    const ScopedEnvironment terminal("TERM", "xterm");
    ProgramOnTerminal host(m_host.Path(), {"-serve", "-quiet"});
    host.ReadUntil("Serving at ");

    HandOver({"wait", "-until", File("go")});

    EXPECT_THAT(host.ReadUntil(" rounds"), ContainsRegex("\r\x1B\\[K1 wait: [0-9]+ rounds$"));
}

TEST_F(HostServerTest, PrintsProgressLinesOnADumbTerminal)
{
    const ScopedEnvironment terminal("TERM", "dumb");
    const std::string archive = WriteArchive();
    ProgramOnTerminal host(m_host.Path(), {"-serve", "-quiet"});
    host.ReadUntil("Serving at ");

    HandOver({"list", "-archive", archive});

    EXPECT_THAT(host.ReadUntil("1 list: done in "),
                EndsWith("1 list: 2 of 2 entries\r\n1 list: done in "));
}

TEST_F(HostServerTest, CompletesEarlierCommandsBeforeQuitting)
{
    const std::string archive = WriteArchive();
    ServingHost host(m_host);

    HandOver({"wait", "-until", File("go")});
    for (const char* const name : {"second", "third"})
        m_host.Run({"list", "-archive", archive, "-out", File(name)});
    m_host.Run({"-quit"});
    EXPECT_FALSE(std::filesystem::exists(File("result")));
    Write("go", "");
    host.AwaitEnd();

    EXPECT_EQ(host.WaitForExitCode(), 0);
    EXPECT_EQ(ReadWholeFile(File("result")), "half of it\nthe other half\n");
    for (const char* const name : {"second", "third"})
        EXPECT_EQ(ReadWholeFile(File(name)), "9\tfolder/two.txt\n19\tone.txt\n");
}

TEST_F(HostServerTest, RemovesTheSocketAndCompletesTheLogWhenQuitting)
{
    const std::string archive = WriteArchive();
    ServingHost host(m_host);
    EXPECT_TRUE(std::filesystem::is_socket(host.Socket()));

    RunForResult(host, {"list", "-archive", archive});
    Quit(host);

    EXPECT_FALSE(std::filesystem::exists(host.Socket()));
    EXPECT_THAT(m_host.Log(), ContainsRegex("Serving at (.|\n)*"
                                            "1 list: started, command line: list -archive (.|\n)*"
                                            "1 list: done in [0-9]+ ms, 28 bytes in (.|\n)*"
                                            "plug-in find stops(.|\n)*"
                                            "plug-in encode stops(.|\n)*"
                                            "plug-in archive stops(.|\n)*"
                                            "Stopping after [0-9]+ ms\n$"));
}

TEST_F(HostServerTest, ReplacesAKilledHost)
{
    const std::string archive = WriteArchive();
    ServingHost killed(m_host);
    HandOver({"wait", "-until", File("never")});
    killed.AwaitLine("1 wait: started");

    killed.Send(SIGKILL);
    EXPECT_EQ(killed.WaitForExitCode(), -SIGKILL);
    EXPECT_TRUE(std::filesystem::is_socket(killed.Socket()));
    EXPECT_FALSE(std::filesystem::exists(File("result")));
    ServingHost next(m_host);

    EXPECT_EQ(RunForResult(next, {"list", "-archive", archive}),
              "9\tfolder/two.txt\n19\tone.txt\n");
    Quit(next);
    EXPECT_FALSE(std::filesystem::exists(next.Socket()));
}

TEST_F(HostServerTest, CancelsTheRunningCommandAndStopsOnASignal)
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        ServingHost host(m_host);
        HandOver({"wait", "-until", File("never")});
        host.AwaitLine("1 wait: started");

        host.Send(signal);

        EXPECT_EQ(host.AwaitOutcome("1 wait"), "failed: cancelled");
        host.AwaitEnd();
        EXPECT_EQ(host.WaitForExitCode(), 0);
        EXPECT_FALSE(std::filesystem::exists(host.Socket()));
        EXPECT_THAT(m_host.Log(), ContainsRegex("Stopping after [0-9]+ ms\n$"));
        EXPECT_THAT(ListDirectory(), SizeIs(0));
    }
}

TEST_F(HostServerTest, EndsWithinFiveSecondsOfASignalDespiteABusyCommand)
{
    ServingHost host(m_host);
    for (int i = 0; i < 3; ++i)
        HandOver({"wait-blindly", "-until", File("never")});
    host.AwaitLine("1 wait-blindly: started");

    const auto begin = std::chrono::steady_clock::now();
    host.Send(SIGTERM);
    host.AwaitEnd();

    EXPECT_EQ(host.WaitForExitCode(), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, GetTimeLimit(5));
    EXPECT_FALSE(std::filesystem::exists(host.Socket()));
    EXPECT_THAT(ListDirectory(), SizeIs(0));
    EXPECT_THAT(
        m_host.Log(),
        EndsWith(
            "Fail : 1 wait-blindly: did not stop in time; the host ends without waiting for it\n"));
}

TEST_F(HostServerTest, EndsImmediatelyOnASecondSignal)
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        ServingHost host(m_host);
        HandOver({"wait-blindly", "-until", File("never")});
        host.AwaitLine("1 wait-blindly: started");
        host.Send(SIGTERM);
        host.AwaitLine("Stopping");

        host.Send(signal);

        EXPECT_EQ(host.WaitForExitCode(), -signal);
    }
}

TEST_F(HostServerTest, KeepsIgnoringASignalIgnoredAtTheStart)
{
    const auto oldHandler = std::signal(SIGHUP, SIG_IGN);
    ServingHost host(m_host);
    std::signal(SIGHUP, oldHandler);

    host.Send(SIGHUP);

    EXPECT_THAT(RunForOutcome(host, {"list", "-archive", WriteArchive()}),
                testing::StartsWith("done in "));
    Quit(host);
}

TEST_F(HostServerTest, CancelsQueuedCommandsOnASignal)
{
    ServingHost host(m_host);
    HandOver({"wait", "-until", File("never")});
    host.AwaitLine("1 wait: started");
    HandOver({"wait-blindly", "-until", File("never")});

    host.Send(SIGTERM);

    EXPECT_EQ(host.AwaitOutcome("2 wait-blindly"), "failed: cancelled");
    host.AwaitEnd();
    EXPECT_EQ(host.WaitForExitCode(), 0);
}

// The new host finds the plug-ins in the folder that was passed to the first one.
TEST_F(HostServerTest, ServesWithTheSameCommandLineAfterARestart)
{
    const std::string archive = WriteArchive();
    const std::filesystem::path plugIns = m_directory.Path() / "some plug-ins";
    std::filesystem::rename(m_host.PlugInsPath(), plugIns);
    ServingHost host(m_host, {"-serve", "-quiet", "-plugins", plugIns});

    EXPECT_EQ(m_host.Run({"-restart"}).output, c_handedOver);
    EXPECT_EQ(host.WaitForExitCode(), 0);
    host.AwaitService();

    EXPECT_EQ(RunForResult(host, {"list", "-archive", archive}),
              "9\tfolder/two.txt\n19\tone.txt\n");
    EXPECT_EQ(m_host.Run({"-quit"}).exitCode, 0);
    host.AwaitEnd();
    EXPECT_FALSE(std::filesystem::exists(host.Socket()));
    // The new host started its log after the old one had completed its own.
    EXPECT_THAT(m_host.Log(), AllOf(Not(HasSubstr("ActivateRestartProcess")),
                                    HasSubstr(">>> WaitingForPreviousProcessFinish()"),
                                    HasSubstr(">>> RestartProcessFinish()"),
                                    ContainsRegex("Stopping after [0-9]+ ms\n$")));
}

TEST_F(HostServerTest, WritesASeparateLogWhileAnotherHostRuns)
{
    Write("notes.txt", "clear\n");
    const std::string settings = Write("other.ini", "[Text]\nfile=notes.txt\nfind=clear\n");
    ServingHost host(m_host);

    const ProgramResult result = m_host.Run({"-config", settings});
    Quit(host);

    const std::string log = "/tmp/" + m_host.UniqueName() + "-second.qvlog";
    EXPECT_THAT(result.output, AllOf(HasSubstr("Already running         yes\n"),
                                     HasSubstr("Log                     " + log + "\n"),
                                     EndsWith("1 of 1 lines contain \"clear\".\n")));
    EXPECT_THAT(ReadWholeFile(log), HasSubstr("1 of 1 lines"));
    EXPECT_THAT(m_host.Log(), AllOf(HasSubstr("Serving at"), Not(HasSubstr("1 of 1 lines"))));
    std::filesystem::remove(log);
}

} // namespace
} // namespace Toolkit::TestSupport
