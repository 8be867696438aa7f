#include "support/RunProgram.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace Toolkit {
namespace {

using testing::HasSubstr;
using TestSupport::RunProgram;
using TestSupport::TempDir;

const std::vector<std::string> c_variables = {
    "wide",       "narrow",  "emptyString",   "shared",      "emptyPointer",
    "version",    "bytes",   "noBytes",       "manyBytes",   "date",
    "noDate",     "match",   "noMatch",       "group",       "settings",
    "noSettings", "*shared", "*shared.Get()", "group->name", "tooManyGroups",
};

using ShownValues = std::map<std::string, std::string>;

// Returns the arguments with which gdb loads the printers and runs `commands`.
std::vector<std::string> CreateGdbArguments(const std::vector<std::string>& commands)
{
    std::vector<std::string> arguments = {"-nx", "-batch"};
    std::vector<std::string> allCommands = {"set charset UTF-8", "set disable-randomization off",
                                            "source " TOOLKIT_PRINTERS};
    allCommands.insert(allCommands.end(), commands.begin(), commands.end());
    for (const std::string& command : allCommands)
        arguments.insert(arguments.end(), {"-ex", command});
    return arguments;
}

void AddPrintCommands(std::vector<std::string>& commands)
{
    commands.emplace_back("up");
    for (const std::string& variable : c_variables) {
        commands.push_back("echo @" + variable + "@");
        commands.push_back("output " + variable);
        commands.emplace_back("echo \\n");
    }
}

// Returns the output for each variable: what follows "@name@".
ShownValues ParseOutput(const std::string& output)
{
    ShownValues values;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t end = line.find('@', 1);
        if (line.starts_with('@') && end != std::string::npos)
            values[line.substr(1, end - 1)] = line.substr(end + 1);
    }
    return values;
}

// Tests what gdb prints for the program's variables, both in the running process and in its core
// file.
class PrintersTest : public testing::TestWithParam<const char*> {
protected:
    static void SetUpTestSuite()
    {
        const TempDir directory;
        const std::string core = directory.Path() / "core";
        directory.WriteFile(L"settings.ini", "[window]\nwidth=800\ntitle=caf\u00E9\n[empty]\n");
        const std::string settings = directory.Path() / "settings.ini";
        std::vector<std::string> commands = {"break Stop", "run " + settings,
                                             "generate-core-file " + core};
        AddPrintCommands(commands);
        commands.emplace_back("kill");
        RunGdb("live", commands);
        commands = {"core-file " + core};
        AddPrintCommands(commands);
        RunGdb("core", commands);
    }

    static std::string GetOutput(const std::string& variable)
    {
        return s_values.at(GetParam())[variable];
    }

private:
    static void RunGdb(const std::string& kind, const std::vector<std::string>& commands)
    {
        std::vector<std::string> arguments = CreateGdbArguments(commands);
        arguments.emplace_back(TOOLKIT_TEST_PRINTERS_PROGRAM);
        const auto result = RunProgram("/usr/bin/gdb", arguments);
        s_values[kind] = ParseOutput(result.output);
        EXPECT_EQ(s_values[kind].size(), c_variables.size()) << result.output << result.errors;
    }

    static std::map<std::string, ShownValues> s_values;
};

std::map<std::string, ShownValues> PrintersTest::s_values;

TEST_P(PrintersTest, FollowsASmartPtrToItsObject)
{
    EXPECT_EQ(GetOutput("*shared"), "1.2.3.4");
    EXPECT_EQ(GetOutput("*shared.Get()"), "1.2.3.4");
    EXPECT_EQ(GetOutput("group->name"), "\"word\"");
}

TEST_P(PrintersTest, ShowsStringsInQuotes)
{
    EXPECT_EQ(GetOutput("wide"), "L\"caf\u00E9\"");
    EXPECT_EQ(GetOutput("narrow"), "\"narrow\"");
    EXPECT_EQ(GetOutput("emptyString"), "\"\"");
}

TEST_P(PrintersTest, ShowsTheObjectAndCountOfAPointer)
{
    EXPECT_EQ(GetOutput("shared"), "count 2 = {object = 1.2.3.4}");
}

TEST_P(PrintersTest, ShowsAnEmptyPointer)
{
    EXPECT_EQ(GetOutput("emptyPointer"), "empty");
}

TEST_P(PrintersTest, ShowsAVersionWithDots)
{
    EXPECT_EQ(GetOutput("version"), "10.20.30.40");
}

TEST_P(PrintersTest, ShowsBytesInHexadecimal)
{
    EXPECT_EQ(GetOutput("bytes"), "6 bytes: 01 ff 74 65 78 74");
    EXPECT_EQ(GetOutput("noBytes"), "0 bytes");
}

TEST_P(PrintersTest, ShowsTheFirstOfManyBytes)
{
    EXPECT_TRUE(GetOutput("manyBytes").starts_with("1000 bytes: ab ab ")) << GetOutput("manyBytes");
    EXPECT_TRUE(GetOutput("manyBytes").ends_with(" ab ...")) << GetOutput("manyBytes");
}

TEST_P(PrintersTest, ShowsADateAsAnIsoString)
{
    EXPECT_EQ(GetOutput("date"), "2009-03-07 07:04:09 Z");
}

TEST_P(PrintersTest, ShowsAnInvalidDate)
{
    EXPECT_EQ(GetOutput("noDate"), "invalid");
}

TEST_P(PrintersTest, ShowsAGroupWithItsNameAndValue)
{
    EXPECT_EQ(GetOutput("group"),
              "count 2 = {object = group 1 = {name = \"word\", value = \"bb\"}}");
}

TEST_P(PrintersTest, ShowsAMatchWithItsGroups)
{
    EXPECT_THAT(GetOutput("match"),
                HasSubstr("object = match = {pattern = \"(?<word>b+)\", subject = "
                          "\"abbc\", groups = "));
    EXPECT_THAT(GetOutput("match"), HasSubstr("object = group 0 = {name = \"\", value = \"bb\"}"));
}

TEST_P(PrintersTest, ShowsAMatchWithTooManyGroups)
{
    EXPECT_THAT(GetOutput("tooManyGroups"), HasSubstr("object = match = {pattern = \"()()"));
}

TEST_P(PrintersTest, ShowsThatAPatternDidNotMatch)
{
    EXPECT_THAT(GetOutput("noMatch"), HasSubstr("object = no match, code -1"));
}

TEST_P(PrintersTest, ShowsTheSettingsOfAnIniFile)
{
    EXPECT_EQ(GetOutput("settings"),
              TOOLKIT_LIBRARY_HAS_DEBUG_INFO
                  ? "loaded = {[window] width = 800, [window] title = caf\u00E9}"
                  : "loaded, settings unknown without debug information of the library");
    EXPECT_EQ(GetOutput("noSettings"), "not loaded");
}

INSTANTIATE_TEST_SUITE_P(Targets, PrintersTest, testing::Values("live", "core"),
                         [](const auto& kind) { return std::string(kind.param); });

} // namespace
} // namespace Toolkit
