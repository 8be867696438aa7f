#include "toolkit/module/LibModuleManager.h"

#include "support/ScopedEnvironment.h"
#include "support/Soak.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <limits>
#include <memory>
#include <string>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

long s_points = 0;

// Returns a name that GoogleTest accepts.
std::string TestName(const testing::TestParamInfo<std::size_t>& info)
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
    static void SetUpTestSuite() { s_world = std::make_unique<World>(); }

    static void TearDownTestSuite()
    {
        s_world.reset();
        Covered(std::to_string(Operations().size()) + " operations, " + std::to_string(s_points) +
                " failed allocations of the library");
    }

    // Runs the operation until it succeeds, or has tried the sample.
    static void Sweep(Persistence persistence)
    {
        const Operation& operation = Operations()[GetParam()];
        const long most =
            SoakRounds(static_cast<int>(operation.sample), std::numeric_limits<int>::max());
        bool hasFailed = true;
        for (long index = 0; hasFailed && index < most; ++index) {
            SCOPED_TRACE("allocation " + std::to_string(index));
            Attempt attempt(Origin::Library, persistence, index);
            operation.run(attempt);
            hasFailed = attempt.HasFailed();
            s_points += hasFailed ? 1 : 0;
            if (attempt.Failures() > 0)
                return;
        }
    }

private:
    struct World {
        TempDir directory;
        ScopedEnvironment home{"HOME", directory.Path().string()};
        ScopedEnvironment temporary{"TMPDIR", directory.Path().string()};
    };

    static std::unique_ptr<World> s_world;
};

std::unique_ptr<OutOfMemorySweepTest::World> OutOfMemorySweepTest::s_world;

TEST_P(OutOfMemorySweepTest, FailsInItsOwnFormWhenOneAllocationFails)
{
    Sweep(Persistence::Once);
}

TEST_P(OutOfMemorySweepTest, FailsInItsOwnFormWhenNoMoreAllocationSucceeds)
{
    Sweep(Persistence::FromThenOn);
}

INSTANTIATE_TEST_SUITE_P(Operations, OutOfMemorySweepTest,
                         testing::Range<std::size_t>(0, Operations().size()), TestName);

} // namespace
} // namespace Toolkit::TestSupport
