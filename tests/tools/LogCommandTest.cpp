#include "toolkit/system/TickCount.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "ToolFixture.h"
#include "examples/ProgramOnTerminal.h"

namespace Toolkit::TestSupport {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

class LogCommandTest : public ToolFixture {
protected:
    // Writes `log` to a file and returns what the command prints for it.
    std::string Print(const std::string& log, std::vector<std::string> arguments = {}) const
    {
        arguments.insert(arguments.begin(), {"log", Write(L"a.qvlog", log)});
        const ProgramResult result = Run(arguments);
        EXPECT_EQ(result.errors, "");
        return result.output;
    }
};

constexpr const char* c_everyForm = "0 4294967000 : 64 : Parse : Unable to open file : a.ini\n"
                                    "1  : wx : 1236232148 : disk full\n"
                                    "3 4294967295 : 7 : Work : two\nlines\n"
                                    "4 20 : 8 : Work : \n";

TEST_F(LogCommandTest, PrintsEveryFormOfALine)
{
    EXPECT_EQ(Print(c_everyForm), "4294967000 error Parse:64 Unable to open file : a.ini\n"
                                  "2009-03-05 05:49:08.000 warning wx disk full\n"
                                  "4294967295 debug Work:7 two\n"
                                  "    lines\n"
                                  "20 verbose Work:8 \n");
}

TEST_F(LogCommandTest, PrintsJson)
{
    EXPECT_EQ(Print(c_everyForm, {"--json"}),
              "{\"tick\":4294967000,\"severity\":\"error\",\"line\":64,\"function\":\"Parse\","
              "\"message\":\"Unable to open file : a.ini\"}\n"
              "{\"time\":\"2009-03-05T05:49:08.000Z\",\"severity\":\"warning\","
              "\"function\":\"wx\",\"message\":\"disk full\"}\n"
              "{\"tick\":4294967295,\"severity\":\"debug\",\"line\":7,\"function\":\"Work\","
              "\"message\":\"two\\u000alines\"}\n"
              "{\"tick\":20,\"severity\":\"verbose\",\"line\":8,\"function\":\"Work\","
              "\"message\":\"\"}\n");
}

TEST_F(LogCommandTest, EscapesTextInJson)
{
    EXPECT_EQ(Print("2 1 : 1 : f : \"\\\xC3\xA9\xFF\x1B\xE2\x80\xAE\n", {"--json"}),
              "{\"tick\":1,\"severity\":\"info\",\"line\":1,\"function\":\"f\","
              "\"message\":\"\\\"\\\\\xC3\xA9\\ufffd\\u001b\\u202e\"}\n");
}

TEST_F(LogCommandTest, EscapesControlCharactersInMessages)
{
    EXPECT_EQ(Print("2 1 : 1 : f : \x1B[2J\xC2\x9B\xE2\x80\xAE\xFF caf\xC3\xA9\n"),
              "1 info f:1 \\x1B[2J\\x9B\\x202E\\xFF caf\xC3\xA9\n");
}

TEST_F(LogCommandTest, PrintsAWrappedLogOldestLineFirst)
{
    EXPECT_EQ(Print("2 900 : 1 : f : 5\n2 300 : 1 : f : 2\n2 500 : 1 : f : 3\n2 700 : 1 : f : 4\n"),
              "300 info f:1 2\n500 info f:1 3\n700 info f:1 4\n900 info f:1 5\n");
}

TEST_F(LogCommandTest, PrintsTheRestOfALineCutByTheSeam)
{
    EXPECT_EQ(Print("2 900 : 1 : f : 5\n: f : 1\n2 300 : 1 : f : 2\n2 700 : 1 : f : 4\n"),
              "- cut - : f : 1\n300 info f:1 2\n700 info f:1 4\n900 info f:1 5\n");
}

TEST_F(LogCommandTest, FindsTheSeamWhenTheTickCountWrapsAround)
{
    EXPECT_EQ(Print("2 1500 : 1 : f : 5\n2 4294966296 : 1 : f : 2\n2 4294967290 : 1 : f : 3\n"
                    "2 500 : 1 : f : 4\n"),
              "4294966296 info f:1 2\n4294967290 info f:1 3\n500 info f:1 4\n1500 info f:1 5\n");
}

// The tick count wraps around after 49.7 days, so a jump back by 40 days looks like one forward
// by 9.7 days.
TEST_F(LogCommandTest, FindsTheSeamInALogOfFortyDays)
{
    EXPECT_EQ(Print("2 3456000000 : 1 : f : 6\n2 0 : 1 : f : 1\n2 691200000 : 1 : f : 2\n"
                    "2 1382400000 : 1 : f : 3\n2 2073600000 : 1 : f : 4\n"
                    "2 2764800000 : 1 : f : 5\n"),
              "0 info f:1 1\n691200000 info f:1 2\n1382400000 info f:1 3\n"
              "2073600000 info f:1 4\n2764800000 info f:1 5\n3456000000 info f:1 6\n");
}

TEST_F(LogCommandTest, OrdersLinesOfThreeRounds)
{
    EXPECT_EQ(Print("2 9000 : 1 : f : 6\n"
                    "2 5000 : 1 : f : 4\n2 7000 : 1 : f : 5\n"
                    "2 1000 : 1 : f : 1\n2 3000 : 1 : f : 2\n"),
              "1000 info f:1 1\n3000 info f:1 2\n5000 info f:1 4\n7000 info f:1 5\n"
              "9000 info f:1 6\n");
}

// A burst once made the file long. Its remaining lines are much older than the second newest round.
TEST_F(LogCommandTest, OrdersLinesOfShortRoundsAfterABurst)
{
    EXPECT_EQ(Print("2 90400 : 1 : f : 5\n2 90500 : 1 : f : 6\n"
                    "2 90200 : 1 : f : 3\n2 90300 : 1 : f : 4\n"
                    "2 10000 : 1 : f : 1\n2 10000 : 1 : f : 2\n"),
              "10000 info f:1 1\n10000 info f:1 2\n90200 info f:1 3\n90300 info f:1 4\n"
              "90400 info f:1 5\n90500 info f:1 6\n");
}

// Tick counts advance in steps of 10 ms, so different tick counts are never closer than those in
// this log.
TEST_F(LogCommandTest, OrdersLinesOfThreeShortRounds)
{
    EXPECT_EQ(Print("2 1040 : 1 : f : 5\n2 1050 : 1 : f : 6\n"
                    "f : cut\n2 1020 : 1 : f : 3\n2 1030 : 1 : f : 4\n"
                    "f : cut\n2 1000 : 1 : f : 1\n2 1010 : 1 : f : 2\n"),
              "- cut - f : cut\n1000 info f:1 1\n1010 info f:1 2\n"
              "- cut - f : cut\n1020 info f:1 3\n1030 info f:1 4\n"
              "1040 info f:1 5\n1050 info f:1 6\n");
}

TEST_F(LogCommandTest, KeepsTheFileOrderOfLinesFromRacingThreads)
{
    const std::string late = "2 100 : 1 : f : 1\n2 3000 : 1 : f : 2\n2 1500 : 1 : g : late\n"
                             "2 3010 : 1 : f : 3\n2 3000 : 1 : g : 4\n2 9000 : 1 : f : 5\n";
    EXPECT_EQ(Print(late), "100 info f:1 1\n3000 info f:1 2\n1500 info g:1 late\n"
                           "3010 info f:1 3\n3000 info g:1 4\n9000 info f:1 5\n");
}

TEST_F(LogCommandTest, PrintsALineWithoutALineFeed)
{
    EXPECT_EQ(Print("2 100 : 1 : f : half"), "100 info f:1 half\n");
}

TEST_F(LogCommandTest, PrintsNothingForAnEmptyLog)
{
    EXPECT_EQ(Print(""), "");
}

// In a log of this machine, the current tick count minus a line's is the age of the line in
// milliseconds.
TEST_F(LogCommandTest, ShowsTheTimeOfDayInALogOfThisMachine)
{
    const std::string tick = std::to_string(GetTickCount() - 60000);
    const std::time_t minuteAgo = std::time(nullptr) - 60;
    char expected[64];
    std::strftime(expected, sizeof expected, "%Y-%m-%d %H:%M:", std::gmtime(&minuteAgo));
    const std::string now = std::to_string(GetTickCount());

    const std::string output = Print("2 " + tick + " : 1 : f : x\n2 " + now + " : 1 : f : y\n");

    EXPECT_THAT(output,
                ContainsRegex("^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8}\\.[0-9]{3} info f:1 x\n"));
    if (minuteAgo % 60 < 57 && minuteAgo % 60 > 3) {
        EXPECT_THAT(output, HasSubstr(expected));
    }
}

TEST_F(LogCommandTest, ShowsTickCountsInALogOfAnotherMachine)
{
    const std::string tick = std::to_string(GetTickCount() + 3600000);

    EXPECT_EQ(Print("2 " + tick + " : 1 : f : x\n"), tick + " info f:1 x\n");
}

TEST_F(LogCommandTest, FiltersBySeverity)
{
    EXPECT_EQ(Print(c_everyForm, {"--severity", "warning"}),
              "4294967000 error Parse:64 Unable to open file : a.ini\n"
              "2009-03-05 05:49:08.000 warning wx disk full\n");
}

TEST_F(LogCommandTest, FiltersByFunction)
{
    EXPECT_EQ(Print(c_everyForm, {"-f", "Parse"}),
              "4294967000 error Parse:64 Unable to open file : a.ini\n");
    EXPECT_EQ(Print(c_everyForm, {"-f", "wx"}), "2009-03-05 05:49:08.000 warning wx disk full\n");
}

TEST_F(LogCommandTest, FiltersByText)
{
    EXPECT_EQ(Print(c_everyForm, {"--text", "lines"}), "4294967295 debug Work:7 two\n    lines\n");
}

TEST_F(LogCommandTest, FiltersByRegularExpression)
{
    EXPECT_EQ(Print(c_everyForm, {"--regex", "(?i)^DISK|\\.ini$"}),
              "4294967000 error Parse:64 Unable to open file : a.ini\n"
              "2009-03-05 05:49:08.000 warning wx disk full\n");
}

TEST_F(LogCommandTest, ExitsWithOneWhenNothingPassesTheFilters)
{
    const std::string log = Write(L"a.qvlog", c_everyForm);

    EXPECT_EQ(Run({"log", log, "-t", "lines"}).exitCode, 0);
    EXPECT_EQ(Run({"log", log, "-t", "nonexistent"}).exitCode, 1);
}

TEST_F(LogCommandTest, ReadsStandardInput)
{
    Write(L"a.qvlog", "2 900 : 1 : f : 5\n2 300 : 1 : f : 2\n");

    for (const std::string line :
         {"cat $dir/a.qvlog | $toolkit log -", "$toolkit log - < $dir/a.qvlog"})
        EXPECT_EQ(RunInShell(line).output, "300 info f:1 2\n900 info f:1 5\n") << line;
}

TEST_F(LogCommandTest, ReportsWhyItCannotReadALog)
{
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"log", "/nonexistent/a.qvlog"},
         "toolkit: cannot open /nonexistent/a.qvlog: No such file or directory\n"},
        {{"log", "/tmp"}, "toolkit: cannot read /tmp: Is a directory\n"},
        {{"log", "no-such-logger"},
         "toolkit: no log named \"no-such-logger\"; \"toolkit log\" lists the logs\n"},
        {{"log", "--follow"}, "toolkit: --follow needs a file or a name\n"}};
    for (const auto& [arguments, message] : cases) {
        const ProgramResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.errors, message);
    }
}

TEST_F(LogCommandTest, RejectsBinaryFiles)
{
    using namespace std::string_literals;
    const std::pair<const char*, std::string> cases[] = {
        {"program", ReadWholeFile("/bin/sh")},
        {"picture", "\x89PNG\r\n\x1A\n\0\0\0\rIHDR"s},
        {"zeros", std::string(3'000'000, '\0')},
        {"UTF-16", "\xFF\xFE"
                   "2\0 \0001\0\n\0"s}};
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        const std::string file = Write(L"file", bytes);

        const ProgramResult result = Run({"log", file});

        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "toolkit: " + file + " is not a log\n");
    }
}

TEST_F(LogCommandTest, RefusesToFollowABinaryFile)
{
    const std::string file = Write(L"file", ReadWholeFile("/bin/sh"));

    const ProgramResult result = Run({"log", "--follow", file});

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "toolkit: " + file + " is not a log\n");
}

TEST_F(LogCommandTest, RejectsBinaryStandardInput)
{
    const ProgramResult result = RunInShell("$toolkit log - </bin/sh");

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "toolkit: standard input is not a log\n");
}

// After a crash of the system, a file may contain zeros where data was not written.
TEST_F(LogCommandTest, ReadsALogThatBeginsWithNullBytes)
{
    EXPECT_EQ(Print(std::string(3, '\0') + "\n2 100 : 1 : f : first\n"),
              "- cut - \\x00\\x00\\x00\n100 info f:1 first\n");
}

TEST_F(LogCommandTest, ReadsAMessageWithANullByte)
{
    EXPECT_EQ(Print(std::string("2 100 : 1 : f : a\0b\n", 20)), "100 info f:1 a\\x00b\n");
}

TEST_F(LogCommandTest, PrintsTextWithoutLogLines)
{
    EXPECT_EQ(Print("starting\ncaf\xE9\n"), "- cut - starting\n    caf\\xE9\n");
}

TEST_F(LogCommandTest, FailsForAnInvalidPattern)
{
    const ProgramResult result = Run({"log", Write(L"a.qvlog", c_everyForm), "-e", "("});

    EXPECT_EQ(result.exitCode, 2);
    // `[^\n]*` because each version of PCRE names the missing parenthesis differently.
    EXPECT_THAT(
        result.errors,
        ContainsRegex("^toolkit: invalid regular expression '[(]': missing [^\n]* at offset 1\n$"));
}

TEST_F(LogCommandTest, FailsForAPatternThatTakesTooManySteps)
{
    const std::string log = "2 1 : 1 : f : " + std::string(40, 'a') + "\n";

    const ProgramResult result =
        Run({"log", Write(L"a.qvlog", log), "-e", "(*LIMIT_MATCH=1)(a+)+$"});

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors,
              "toolkit: the search for '(*LIMIT_MATCH=1)(a+)+$' failed: too many steps\n");
}

// Fixture with logs of this user, in the directory where loggers write.
class NamedLogTest : public ToolFixture {
protected:
    NamedLogTest() { Write(""); }
    ~NamedLogTest() override
    {
        for (const std::string& path : m_paths)
            std::filesystem::remove(path);
    }

    std::string Name() const { return "toolkit-log-test-" + std::to_string(::getpid()); }
    std::string Path(const std::string& suffix) const
    {
        return "/tmp/" + Name() + suffix + ".qvlog";
    }
    void Write(const std::string& suffix)
    {
        m_paths.push_back(Path(suffix));
        std::ofstream(Path(suffix)) << "2 100 : 1 : f : written" + suffix + "\n";
    }

    // Writes a file, and makes all earlier ones older than it.
    void WriteNewest(const std::string& suffix)
    {
        for (const std::string& path : m_paths) {
            const timespec past[] = {{1000, 0}, {1000, 0}};
            ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), past, 0), 0);
        }
        Write(suffix);
    }

private:
    std::vector<std::string> m_paths;
};

TEST_F(NamedLogTest, IsFoundByItsName)
{
    const ProgramResult result = Run({"log", Name()});

    EXPECT_EQ(result.output, "100 info f:1 written\n");
    EXPECT_EQ(result.errors, "");
}

TEST_F(NamedLogTest, IsTheMostRecentlyWrittenFallbackFile)
{
    WriteNewest("-4294967290");

    const ProgramResult result = Run({"log", Name()});

    EXPECT_EQ(result.output, "100 info f:1 written-4294967290\n");
    EXPECT_EQ(result.errors, "toolkit: reading " + Path("-4294967290") + "\n");
}

TEST_F(NamedLogTest, IgnoresFilesWithNumbersThatLoggersDoNotAdd)
{
    for (const char* const suffix : {"-2", "-2024", "-01234560", "-4294967296", "-12345x"}) {
        WriteNewest(suffix);
        EXPECT_EQ(Run({"log", Name()}).output, "100 info f:1 written\n") << suffix;
    }
}

TEST_F(NamedLogTest, IgnoresAFileOfAnotherUser)
{
    WriteNewest("-1234560");
    if (::chown(Path("-1234560").c_str(), 12345, 12345) != 0)
        GTEST_SKIP() << "only root may change the owner of a file";

    EXPECT_EQ(Run({"log", Name()}).output, "100 info f:1 written\n");
    EXPECT_EQ(Run({"log", Path("-1234560")}).output, "100 info f:1 written-1234560\n");
}

TEST_F(NamedLogTest, IsListedWithTimeAndSize)
{
    EXPECT_THAT(Run({"log"}).output,
                ContainsRegex("[0-9]{4}-[0-9-]{5} [0-9:]{8} +24 " + Path("") + "\n"));
}

} // namespace
} // namespace Toolkit::TestSupport
