#include "toolkit/module/LibModuleManager.h"

#include "support/ScopedEnvironment.h"
#include "support/Soak.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <limits>
#include <memory>
#include <string>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

long s_failedAllocations = 0;

// Returns a name that GoogleTest accepts.
std::string GetTestName(const testing::TestParamInfo<std::size_t>& info)
{
    std::string name = Operations()[info.param].name;
    for (char& character : name) {
        if (!std::isalnum(static_cast<unsigned char>(character)))
            character = '_';
    }
    return name + "_" + std::to_string(info.param);
}

class OutOfMemorySweepTest : public testing::TestWithParam<std::size_t> {
protected:
    static void SetUpTestSuite() { s_environment = std::make_unique<Environment>(); }

    static void TearDownTestSuite()
    {
        s_environment.reset();
        Covered(std::to_string(Operations().size()) + " operations, " +
                std::to_string(s_failedAllocations) + " failed allocations of the library");
    }

    // Makes one allocation after another fail, until the operation makes no further allocation,
    // the sample is complete, or an expectation fails.
    static void Sweep(Persistence persistence)
    {
        const Operation& operation = Operations()[GetParam()];
        const long maxAllocations = SoakRounds(static_cast<int>(operation.maxSampledFailures),
                                               std::numeric_limits<int>::max());
        bool hasFailed = true;
        for (long index = 0; hasFailed && index < maxAllocations; ++index) {
            SCOPED_TRACE("allocation " + std::to_string(index));
            Attempt attempt(Origin::Library, persistence, index);
            operation.run(attempt);
            hasFailed = attempt.HasAllocationFailed();
            s_failedAllocations += hasFailed ? 1 : 0;
            if (attempt.CountUnexpectedResults() > 0)
                return;
        }
    }

private:
    struct Environment {
        TempDir directory;
        ScopedEnvironment home{"HOME", directory.Path().string()};
        ScopedEnvironment temporary{"TMPDIR", directory.Path().string()};
    };

    static std::unique_ptr<Environment> s_environment;
};

std::unique_ptr<OutOfMemorySweepTest::Environment> OutOfMemorySweepTest::s_environment;

TEST_P(OutOfMemorySweepTest, FailsAsDocumentedWhenOneAllocationFails)
{
    Sweep(Persistence::Once);
}

TEST_P(OutOfMemorySweepTest, FailsAsDocumentedWhenOneAndAllLaterAllocationsFail)
{
    Sweep(Persistence::FromThenOn);
}

INSTANTIATE_TEST_SUITE_P(Operations, OutOfMemorySweepTest,
                         testing::Range<std::size_t>(0, Operations().size()), GetTestName);

} // namespace
} // namespace Toolkit::TestSupport
