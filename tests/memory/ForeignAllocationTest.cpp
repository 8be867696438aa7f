// Makes allocations of wxWidgets, ICU, PCRE and the C library fail, each in a child process. Counts
// the outcomes of the library's operations by the module that requested the memory.
#include "support/ScopedEnvironment.h"
#include "support/Soak.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <limits>
#include <map>
#include <new>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

constexpr unsigned c_childSeconds = 5;

// Far fewer would mean that the faults do not reach the other modules.
constexpr long c_minFailedAllocations = 80;

// AsPromised is the right result, or a failure that the operation reports as documented. Ended is a
// child that crashed or exited before the operation returned.
enum Outcome : std::size_t { AsPromised, Wrong, Ended, Hung };

constexpr std::array<const char*, 4> c_outcomes = {"as documented", "other result", "ended",
                                                   "hung"};

// What a child reports to its parent.
struct Report {
    bool hasFailed;
    bool isComplete;
    std::array<char, 64> module;
};

// Number of failed allocations with each outcome.
using Counts = std::array<long, 4>;

Report* s_report = nullptr;

// Async-signal-safe.
void StoreModule()
{
    const std::string_view module = AllocationFault::FailedModule();
    s_report->hasFailed = s_report->hasFailed || !module.empty();
    std::memcpy(s_report->module.data(), module.data(),
                std::min(module.size(), s_report->module.size() - 1));
}

void StoreModuleAndRaise(int signal)
{
    StoreModule();
    std::signal(signal, SIG_DFL);
    ::raise(signal);
}

void PrepareChild()
{
    constexpr rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(null, STDOUT_FILENO);
    ::dup2(null, STDERR_FILENO);
    for (const int signal : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGTRAP, SIGALRM})
        std::signal(signal, &StoreModuleAndRaise);
    ::alarm(c_childSeconds);
}

// noexcept, so that an exception ends the child. If the test runner caught it, the child would
// destroy the fixture, which removes the parent's files.
[[noreturn]] void RunChild(const Operation& operation, Persistence persistence, long index) noexcept
{
    PrepareChild();
    Attempt attempt(Origin::Foreign, persistence, index);
    operation.run(attempt);
    s_report->hasFailed = attempt.HasAllocationFailed();
    s_report->isComplete = true;
    StoreModule();
    ::_exit(attempt.CountUnexpectedResults() > 0 || testing::Test::HasFailure() ? 1 : 0);
}

Outcome GetOutcome(int status)
{
    if (WIFEXITED(status) && s_report->isComplete)
        return WEXITSTATUS(status) == 0 ? AsPromised : Wrong;
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM ? Hung : Ended;
}

// Removes the log that a child leaves if it ends early.
void RemoveLogOf(pid_t child)
{
    std::error_code ignored;
    std::filesystem::remove("/tmp/out-of-memory-sweep-" + std::to_string(child) + ".qvlog",
                            ignored);
}

Outcome RunInChild(const Operation& operation, Persistence persistence, long index)
{
    *s_report = {};
    const pid_t child = ::fork();
    if (child == 0)
        RunChild(operation, persistence, index);
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    RemoveLogOf(child);
    return GetOutcome(status);
}

class ForeignAllocationTest : public testing::Test {
protected:
    ForeignAllocationTest()
    {
        void* const shared = ::mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE,
                                    MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (shared != MAP_FAILED)
            s_report = new (shared) Report();
    }
    ~ForeignAllocationTest() override
    {
        if (s_report)
            ::munmap(s_report, sizeof(Report));
        s_report = nullptr;
    }

    // Runs the operation in a child. If an allocation failed, counts the outcome and returns true.
    bool RunAndCount(const Operation& operation, Persistence persistence, long index)
    {
        const Outcome outcome = RunInChild(operation, persistence, index);
        if (!s_report->hasFailed) {
            // Reported at the end, because the children inherit the test failures of this process.
            if (outcome != AsPromised)
                m_failedWithEnoughMemory.emplace_back(operation.name);
            return false;
        }
        ++m_counts[s_report->module.data()][outcome];
        ++m_failedAllocations;
        if (outcome != AsPromised)
            Print(operation, persistence, index, outcome);
        return true;
    }

    // Tries the first allocation of each operation, or all of them under script/soak.
    void Sweep(Persistence persistence)
    {
        const long maxAllocations = SoakRounds(1, std::numeric_limits<int>::max());
        for (const Operation& operation : Operations()) {
            for (long index = 0;
                 index < maxAllocations && RunAndCount(operation, persistence, index);)
                ++index;
        }
    }

    void PrintCounts(const char* how) const
    {
        for (const auto& [module, counts] : m_counts) {
            std::string line = std::string(how) + ", " + module;
            for (const Outcome outcome : {AsPromised, Wrong, Ended, Hung})
                line += ", " + std::to_string(counts[outcome]) + " " + c_outcomes[outcome];
            Covered(line);
        }
    }

    // A crashed child leaves its files here.
    TempDir m_dir;
    ScopedEnvironment m_temporary{"TMPDIR", m_dir.Path().string()};
    std::map<std::string, Counts> m_counts;
    std::vector<std::string> m_failedWithEnoughMemory;
    long m_failedAllocations = 0;

private:
    static void Print(const Operation& operation, Persistence persistence, long index,
                      Outcome outcome)
    {
        std::printf("%s, allocation %ld%s, %s: %s\n", operation.name, index,
                    persistence == Persistence::Once ? "" : " and all after it",
                    s_report->module.data(), c_outcomes[outcome]);
        // A forked child must not inherit the buffered line.
        std::fflush(stdout);
    }
};

TEST_F(ForeignAllocationTest, CountsOutcomesOfSingleFailuresPerModule)
{
    ASSERT_TRUE(s_report);
    Sweep(Persistence::Once);

    PrintCounts("single failures");
    EXPECT_GT(m_failedAllocations, c_minFailedAllocations);
    EXPECT_THAT(m_failedWithEnoughMemory, testing::IsEmpty());
}

TEST_F(ForeignAllocationTest, CountsOutcomesOfLastingFailuresPerModule)
{
    ASSERT_TRUE(s_report);
    Sweep(Persistence::FromThenOn);

    PrintCounts("lasting failures");
    EXPECT_GT(m_failedAllocations, c_minFailedAllocations);
    EXPECT_THAT(m_failedWithEnoughMemory, testing::IsEmpty());
}

} // namespace
} // namespace Toolkit::TestSupport
