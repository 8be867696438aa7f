#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "ToolFixture.h"
#include "examples/ProgramOnTerminal.h"

namespace Toolkit::TestSupport {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class CommandTest : public ToolFixture {
protected:
    void ExpectUsageError(const std::vector<std::string>& arguments)
    {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const ProgramResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors, StartsWith("toolkit: "));
    }
};

TEST_F(CommandTest, PrintsItsVersion)
{
    const ProgramResult result = Run({"--version"});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "toolkit 1.0.332.3\n");
}

TEST_F(CommandTest, ListsTheLogSubcommandInHelp)
{
    const ProgramResult result = Run({"--help"});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, ContainsRegex("\n +log  "));
}

TEST_F(CommandTest, FailsOnInvalidUsage)
{
    const std::vector<std::string> cases[] = {{},
                                              {"nonexistent"},
                                              {"--nonexistent"},
                                              {"log", "--nonexistent"},
                                              {"log", "-s", "loud", "x"}};
    for (const auto& arguments : cases)
        ExpectUsageError(arguments);
}

TEST_F(CommandTest, RejectsLogOptionsWithoutALog)
{
    const std::vector<std::string> cases[] = {
        {"log", ""}, {"log", "--json"}, {"log", "-s", "error"}, {"log", "-t", "x"}};
    for (const auto& arguments : cases)
        ExpectUsageError(arguments);
}

TEST_F(CommandTest, NamesUnknownSubcommandsAndOptions)
{
    EXPECT_THAT(Run({"bogus"}).errors, StartsWith("toolkit: unknown subcommand \"bogus\"\n"));
    EXPECT_THAT(Run({"ini", "bogus", "x"}).errors,
                StartsWith("toolkit: unknown subcommand \"bogus\"\n"));
    EXPECT_THAT(Run({"--bogus"}).errors, StartsWith("toolkit: unknown option \"--bogus\"\n"));
    EXPECT_THAT(Run({"ini", "list", "--bogus"}).errors,
                StartsWith("toolkit: unknown option \"--bogus\"\n"));
    EXPECT_THAT(Run({"ini", "list", "a", "bogus"}).errors,
                StartsWith("toolkit: The following argument was not expected: bogus\n"));
    EXPECT_THAT(Run({}).errors, StartsWith("toolkit: A subcommand is required\n"));
}

TEST_F(CommandTest, EscapesControlCharactersInArguments)
{
    EXPECT_THAT(Run({"log", "x", "\x1B]0;evil\x07"}).errors,
                AllOf(HasSubstr("\\x1B]0;evil\\x07"), Not(HasSubstr("\x1B"))));
    EXPECT_EQ(Run({"log", "\x1B[31m"}).errors,
              "toolkit: no log named \"\\x1B[31m\"; \"toolkit log\" lists the logs\n");
}

TEST_F(CommandTest, FailsWhenTheDiskIsFull)
{
    Write(L"a.qvlog", "2 100 : 1 : f : x\n");

    for (const std::string arguments : {"--version", "--help", "log $dir/a.qvlog"}) {
        SCOPED_TRACE(arguments);
        const ProgramResult result = RunInShell("$toolkit " + arguments + " > /dev/full");
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.errors,
                    StartsWith("toolkit: cannot write to standard output: No space left"));
    }
}

TEST_F(CommandTest, IsKilledBySigpipeWhenItsOutputIsClosed)
{
    std::string log;
    for (int i = 0; i < 100000; ++i)
        log += "2 100 : 1 : f : x\n";
    Write(L"a.qvlog", log);

    const ProgramResult result =
        RunInShell("{ $toolkit log $dir/a.qvlog; echo $? >&2; } | head -n 1");

    EXPECT_EQ(result.output, "100 info f:1 x\n");
    EXPECT_EQ(result.errors, "141\n"); // 128 + SIGPIPE
}

TEST_F(CommandTest, UsesColoursOnATerminalOnly)
{
    const std::string log = Write(L"a.qvlog", "0 100 : 1 : f : x\n");
    const ScopedEnvironment terminal("TERM", "xterm");
    const ScopedEnvironment noColor("NO_COLOR", std::nullopt);

    EXPECT_EQ(Run({"log", log}).output, "100 error f:1 x\n");
    ProgramOnTerminal shown(TOOLKIT_COMMAND, {"log", log});
    EXPECT_THAT(shown.ReadUntil(" x\r\n"), HasSubstr("\033[31merror\033[0m"));
}

TEST_F(CommandTest, TurnsColoursOffForNoColor)
{
    const std::string log = Write(L"a.qvlog", "0 100 : 1 : f : x\n");
    const ScopedEnvironment terminal("TERM", "xterm");
    const ScopedEnvironment noColor("NO_COLOR", "1");

    ProgramOnTerminal shown(TOOLKIT_COMMAND, {"log", log});

    EXPECT_THAT(shown.ReadUntil(" x\r\n"), Not(HasSubstr("\033")));
}

} // namespace
} // namespace Toolkit::TestSupport
