#include "support/RunProgram.h"
#include "support/Sanitizers.h"
#include "support/ScopedEnvironment.h"
#include "support/Soak.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace Toolkit {
namespace {

using TestSupport::Covered;
using TestSupport::RunProgram;
using TestSupport::ScopedEnvironment;
using TestSupport::SoakRounds;
using TestSupport::TempDir;

// Runs ForkProgram and returns the number of children that hang or crash; all of them if the
// program prints nothing. Stores in `errors` what the program and its children print to standard
// error.
int CountFailures(const std::string& operation, int children, std::string& errors)
{
    const TempDir directory;
    const ScopedEnvironment home("HOME", directory.Path());
    const ScopedEnvironment temporary("TMPDIR", directory.Path());
    // A child cannot free the memory of its parent's threads.
    const char* const options = std::getenv("ASAN_OPTIONS");
    const ScopedEnvironment sanitizer("ASAN_OPTIONS",
                                      std::string(options ? options : "") + ":detect_leaks=0");
    const auto result =
        RunProgram(TOOLKIT_TEST_FORK_PROGRAM, {operation, std::to_string(children)});
    const int failures = result.output.empty() ? children : std::stoi(result.output);
    errors = result.errors;
    Covered(operation + ": " + std::to_string(failures) + " of " + std::to_string(children) +
            " children fail");
    return failures;
}

class ForkedChildTest : public testing::TestWithParam<const char*> {};

TEST_P(ForkedChildTest, DoesNotHangCrashOrPrint)
{
#ifdef TOOLKIT_ADDRESS_SANITIZER
    // The locks of the sanitizer's malloc() may stay held in the child. Small allocations rarely
    // take one, but a PCRE 2 search allocates 20 KiB.
    if (GetParam() == std::string("pattern"))
        GTEST_SKIP() << "the sanitizer's malloc() may hang in a forked child";
#endif
    std::string errors;
    EXPECT_EQ(CountFailures(GetParam(), SoakRounds(20, 1000), errors), 0);
    EXPECT_EQ(errors, "");
}

// The operations that docs/fork.md allows.
INSTANTIATE_TEST_SUITE_P(
    Allowed, ForkedChildTest,
    testing::Values("exit while others log", "exit while the logger is replaced",
                    "exit while modules come and go", "exit while messages are forwarded", "text",
                    "pointer", "lock of its own", "destroyed lock", "log", "pattern", "program"),
    [](const auto& operation) {
        std::string name = operation.param;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

// Counts the failures of the operations that docs/fork.md does not allow, for its table.
TEST(ForkedChildCountTest, CountsTheFailuresOfOperationsThatAreNotAllowed)
{
    const int children = SoakRounds(0, 50);
    if (children == 0)
        GTEST_SKIP() << "only script/soak counts the failures";
    std::string ignoredErrors;
    for (const char* const operation :
         {"exit while messages are made", "shared lock", "date", "file", "notifier", "thread"})
        CountFailures(operation, children, ignoredErrors);
}

} // namespace
} // namespace Toolkit
