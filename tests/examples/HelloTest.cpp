#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InstalledProgram.h"

namespace Toolkit::Testing {
namespace {

TEST(HelloTest, SaysHelloInItsLog)
{
    const InstalledProgram hello(HELLO_PROGRAM);

    const ProgramResult result = hello.Run({});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(hello.Log(), testing::MatchesRegex("2 [0-9]+ : [0-9]+ : main : Hello from " +
                                                   hello.Name() + "\n"));
}

// It stops while the log's writer thread is still about to open its file.
TEST(HelloTest, StopsCleanlyEachTime)
{
    const InstalledProgram hello(HELLO_PROGRAM);
    constexpr int runs = 10;

    for (int run = 0; run < runs; ++run) {
        const ProgramResult result = hello.Run({});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
    }
}

} // namespace
} // namespace Toolkit::Testing
