#include "support/Sanitizers.h"
#include "support/Soak.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Toolkit {
namespace {

using TestSupport::Covered;
using TestSupport::ReadWholeFile;
using TestSupport::SoakRounds;
using TestSupport::TempDir;

constexpr int c_status = 7;
constexpr const char* c_timeoutS = "10";
constexpr const char* c_timeoutUnderValgrindS = "100";
#ifdef TOOLKIT_SANITIZER
constexpr bool c_isSanitized = true;
#else
constexpr bool c_isSanitized = false;
#endif
constexpr const char* c_program = TOOLKIT_TEST_PROCESS_END_PROGRAM;
// A host that does not link the library.
constexpr const char* c_unlinkedHost = TOOLKIT_TEST_PROCESS_END_UNLINKED_HOST;

const std::vector<std::string> c_objects = {
    "process logger",  "static logger",    "global logger",    "thread_local logger",
    "private logger",  "static thread",    "global thread",    "thread_local thread",
    "module's thread", "forwarder",        "leaked forwarder", "server",
    "paused thread",   "unstarted thread",
};

// Used only in the program itself, because threads must not run code of an unloaded plug-in. Not
// used if the process forks, because ProcessEndProgram then waits until the log stops growing.
constexpr const char* c_loggingThreads = "logging threads";

// One process: a program, how it ends, which objects are alive, and in which plug-in.
struct Case {
    std::string program;
    std::string how;
    std::string what;
    std::string plugIn; // empty: in the program itself
    bool isUnderValgrind = false;

    std::vector<std::string> Arguments() const
    {
        std::vector<std::string> arguments = {program, c_timeoutS, how, what};
        if (isUnderValgrind) {
            arguments[1] = c_timeoutUnderValgrindS;
            arguments.insert(arguments.begin(), {"valgrind", "--quiet", "--error-exitcode=99",
                                                 "--vgdb=no", "--read-inline-info=no"});
        }
        if (!plugIn.empty())
            arguments.push_back(plugIn);
        return arguments;
    }
    std::string Name() const
    {
        return how + " with " + what +
               (plugIn.empty() ? "" : " in " + std::filesystem::path(plugIn).stem().string());
    }
    // A process that does not stop the library leaks wxWidgets' memory. A forked child leaks the
    // memory of its parent's threads. The leaked forwarder is never deleted.
    bool LeaksMemory() const { return !how.ends_with("release") || what == "leaked forwarder"; }
    // Whether the lines of ProcessEndScene.h must be in the log.
    bool HasLogToCheck() const
    {
        return what.find("logger") != std::string::npos ||
               what.find("forwarder") != std::string::npos;
    }
};

// How a process ended, and what it left behind.
struct End {
    int status; // minus the signal number if a signal ended it; -1 if it did not start
    std::string output;
    std::string log;
    std::vector<std::string> files;
};

std::vector<std::string> EnvironmentIn(const std::filesystem::path& directory, bool leaksMemory)
{
    std::vector<std::string> variables;
    for (char** variable = environ; *variable; ++variable) {
        const std::string_view setting = *variable;
        if (!setting.starts_with("HOME=") && !setting.starts_with("TMPDIR=") &&
            !(leaksMemory && setting.starts_with("ASAN_OPTIONS=")))
            variables.emplace_back(setting);
    }
    const char* const sanitizer = std::getenv("ASAN_OPTIONS");
    if (leaksMemory)
        variables.push_back("ASAN_OPTIONS=" + std::string(sanitizer ? sanitizer : "") +
                            ":detect_leaks=0");
    // Turns off the AVX2 string functions of the C library, which valgrind wrongly reports as
    // reading past the end of a string.
    variables.emplace_back("GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2_Usable,-AVX2");
    variables.push_back("HOME=" + (directory / "home").string());
    variables.push_back("TMPDIR=" + (directory / "tmp").string());
    return variables;
}

std::vector<char*> PointersTo(std::vector<std::string>& strings)
{
    std::vector<char*> pointers;
    for (std::string& string : strings)
        pointers.push_back(string.data());
    pointers.push_back(nullptr);
    return pointers;
}

int Run(const Case& testCase, const std::filesystem::path& directory)
{
    std::vector<std::string> arguments = testCase.Arguments();
    std::vector<std::string> variables = EnvironmentIn(directory, testCase.LeaksMemory());
    const std::filesystem::path output = directory / "output";
    constexpr int flags = O_WRONLY | O_CREAT | O_APPEND;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), flags, 0600);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, output.c_str(), flags, 0600);
    pid_t process = 0;
    const int error = ::posix_spawnp(&process, arguments.front().c_str(), &actions, nullptr,
                                     PointersTo(arguments).data(), PointersTo(variables).data());
    ::posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (error != 0 || ::waitpid(process, &status, 0) != process)
        return -1;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

// Stores in `end` the log and the names of the other files left behind, except the program's output
// and the lock file, which is never removed by design.
void StoreFiles(End& end, const std::filesystem::path& directory)
{
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
        const std::string name = entry.path().filename();
        if (name == "scene.qvlog")
            end.log = ReadWholeFile(entry.path());
        else if (!entry.is_directory() && entry.path().extension() != ".lock" && name != "output")
            end.files.push_back(name);
    }
}

End RunInTempDir(const Case& testCase)
{
    const TempDir directory;
    std::filesystem::create_directory(directory.Path() / "home");
    std::filesystem::create_directory(directory.Path() / "tmp");
    End end{};
    end.status = Run(testCase, directory.Path());
    end.output = ReadWholeFile(directory.Path() / "output");
    StoreFiles(end, directory.Path());
    return end;
}

std::string CompleteLog()
{
    std::string log;
    for (int i = 0; i < 100; ++i)
        log += "line " + std::to_string(i) + "\n";
    return log;
}

// Describes what is wrong with `end`; empty if nothing is. SIGTERM may cut the log after any line;
// SIGTERM and quick_exit() may leave files behind.
std::string DescribeFault(const Case& testCase, const End& end)
{
    const bool isTerminated = testCase.how == "SIGTERM";
    const bool endsAbruptly = isTerminated || testCase.how == "quick_exit";
    const std::string expectedLog = CompleteLog();
    if (end.status != (isTerminated ? -SIGTERM : c_status))
        return "status " + std::to_string(end.status) + "; " + end.output;
    if (!end.output.empty())
        return "prints: " + end.output;
    if (testCase.HasLogToCheck() && isTerminated &&
        (!expectedLog.starts_with(end.log) || (!end.log.empty() && end.log.back() != '\n')))
        return "the log ends within a line, or is not the beginning of the expected log";
    if (testCase.HasLogToCheck() && !isTerminated && end.log != expectedLog)
        return "a log of " + std::to_string(end.log.size()) +
               " bytes that differs from the expected log";
    if (!endsAbruptly && !end.files.empty())
        return "leaves " + end.files.front() + " behind";
    return "";
}

// Runs all cases `rounds` times, four at a time per processor, since they mostly wait. `title`
// heads the report.
void RunAll(const std::string& title, const std::vector<Case>& cases, int rounds)
{
    const std::size_t count = cases.size() * static_cast<std::size_t>(rounds);
    std::atomic<std::size_t> next{0};
    std::mutex lock;
    const auto work = [&] {
        for (std::size_t i = next++; i < count; i = next++) {
            const Case& testCase = cases[i % cases.size()];
            const std::string fault = DescribeFault(testCase, RunInTempDir(testCase));
            const std::lock_guard guard(lock);
            EXPECT_EQ(fault, "") << testCase.Name();
        }
    };
    std::vector<std::jthread> workers;
    for (unsigned int i = 0; i < 4 * std::max(1u, std::thread::hardware_concurrency()); ++i)
        workers.emplace_back(work);
    workers.clear();
    Covered(title + ": " + std::to_string(cases.size()) + " cases, " + std::to_string(rounds) +
            " times each");
}

// Returns the cases for all kinds of live objects, in the program and in a plug-in built for each
// C++ standard. For the ways that call dlclose(), only those in plug-ins.
std::vector<Case> CasesFor(const std::string& how)
{
    std::vector<Case> cases;
    for (const std::string& what : c_objects) {
        if (!how.starts_with("dlclose"))
            cases.push_back({c_program, how, what, ""});
        for (const char* const plugIn : {TOOLKIT_TEST_PROCESS_END_PLUG_INS})
            cases.push_back({c_program, how, what, plugIn});
    }
    if (!how.starts_with("dlclose") && !how.starts_with("fork"))
        cases.push_back({c_program, how, c_loggingThreads, ""});
    return cases;
}

std::vector<Case> UnlinkedHostCases()
{
    std::vector<Case> cases;
    for (const std::string& what : c_objects) {
        for (const char* const plugIn : {TOOLKIT_TEST_PROCESS_END_PLUG_INS}) {
            cases.push_back({c_unlinkedHost, "return", what, plugIn});
            cases.push_back({c_unlinkedHost, "dlclose", what, plugIn});
        }
    }
    return cases;
}

constexpr const char* c_ways[] = {"release",          "return",  "exit",
                                  "exit on a thread", "dlclose", "dlclose and release",
                                  "unload",           "fork",    "fork and return",
                                  "quick_exit",       "SIGTERM"};

class ProcessEndTest : public testing::TestWithParam<const char*> {};

TEST_P(ProcessEndTest, KeepsStatusAndLogAndLeavesNoFiles)
{
    RunAll(GetParam(), CasesFor(GetParam()), SoakRounds(1, 30));
}

INSTANTIATE_TEST_SUITE_P(Ways, ProcessEndTest, testing::ValuesIn(c_ways), [](const auto& way) {
    std::string name = way.param;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
});

TEST(ProcessEndUnlinkedHostTest, KeepsStatusAndLogAndLeavesNoFiles)
{
    RunAll("a host without the library", UnlinkedHostCases(), SoakRounds(1, 30));
}

class ProcessEndUnderValgrindTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (c_isSanitized || std::system("valgrind --version >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "valgrind is missing, or the build uses a sanitizer";
    }

    static void RunUnderValgrind(const std::string& title, std::vector<Case> cases)
    {
        for (Case& testCase : cases)
            testCase.isUnderValgrind = true;
        RunAll(title + " under valgrind", cases, 1);
    }
};

// A sample, because each process takes seconds.
TEST_F(ProcessEndUnderValgrindTest, IsCleanInASample)
{
    const std::string plugIn = std::vector<const char*>{TOOLKIT_TEST_PROCESS_END_PLUG_INS}.back();
    RunUnderValgrind("a sample", {{c_program, "exit on a thread", "process logger", plugIn},
                                  {c_program, "fork", "global logger", plugIn},
                                  {c_unlinkedHost, "dlclose", "static thread", plugIn}});
}

TEST_F(ProcessEndUnderValgrindTest, IsCleanInEveryCase)
{
    const int rounds = SoakRounds(0, 30);
    if (rounds == 0)
        GTEST_SKIP() << "takes hours; script/soak runs it";
    std::vector<Case> all = UnlinkedHostCases();
    for (const char* const way : c_ways) {
        const std::vector<Case> cases = CasesFor(way);
        all.insert(all.end(), cases.begin(), cases.end());
    }
    for (int round = 1; round <= rounds; ++round)
        RunUnderValgrind("round " + std::to_string(round), all);
}

} // namespace
} // namespace Toolkit
