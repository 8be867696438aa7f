#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "InstalledProgram.h"

namespace Toolkit::TestSupport {
namespace {

TEST(HelloTest, WritesHelloToItsLog)
{
    const InstalledProgram hello(HELLO_PROGRAM);

    const ProgramResult result = hello.Run({});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "The log is " + hello.LogPath().native() + "\n");
    EXPECT_THAT(hello.Log(), testing::MatchesRegex("2 [0-9]+ : [0-9]+ : main : Hello from " +
                                                   hello.Name() + "\n"));
}

TEST(HelloTest, ReportsTheLogThatItActuallyOpened)
{
    const InstalledProgram hello(HELLO_PROGRAM);
    // The logger cannot open a directory as its file, so it falls back to another name.
    std::filesystem::create_directory(hello.LogPath());

    const ProgramResult result = hello.Run({});

    const std::string beginning = "The log is ";
    ASSERT_THAT(result.output, testing::MatchesRegex(beginning + "/tmp/" + hello.UniqueName() +
                                                     "-[0-9]+.qvlog\n"));
    const std::string rest = result.output.substr(beginning.size());
    const std::filesystem::path path = rest.substr(0, rest.size() - 1);
    EXPECT_THAT(ReadWholeFile(path), testing::HasSubstr("Hello from"));
    std::filesystem::remove(path);
}

// The program exits as soon as the log's writer thread has opened the file. Runs it several times,
// because a race may not show up every time.
TEST(HelloTest, ExitsCleanlyRightAfterOpeningTheLog)
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
} // namespace Toolkit::TestSupport
