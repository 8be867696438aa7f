#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "ToolFixture.h"

namespace Toolkit::TestSupport {
namespace {

using testing::HasSubstr;

class IniCommandTest : public ToolFixture {
protected:
    // Runs "toolkit ini check" on a file that contains `text`, checks the exit code, and returns
    // the output. Runs the command in the directory of the file, so that the output names only
    // "a.ini".
    std::string Check(const std::string& text, int exitCode) const
    {
        Write(L"a.ini", text);
        const ProgramResult result = RunInShell("cd $dir; $toolkit ini check a.ini");
        EXPECT_EQ(result.exitCode, exitCode) << text;
        EXPECT_EQ(result.errors, "");
        return result.output;
    }
};

constexpr const char* c_settings = "[Window]\nwidth = 640\nwidth=800\ntitle =  a = b \n[]\nempty=\n"
                                   "[Window]\nheight=480\n";

TEST_F(IniCommandTest, ListsTheSettingsThatTheLibraryReads)
{
    EXPECT_EQ(Run({"ini", "list", Write(L"a.ini", c_settings)}).output,
              "[Window]\nheight=480\ntitle=a = b\nwidth=640\n[]\nempty=\n");
}

TEST_F(IniCommandTest, GetsAValue)
{
    const std::string file = Write(L"a.ini", c_settings);

    const ProgramResult result = Run({"ini", "get", file, "Window", "title"});
    EXPECT_EQ(result.output, "a = b\n");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(Run({"ini", "get", file, "", "empty"}).output, "\n");
}

TEST_F(IniCommandTest, ExitsWithOneForAMissingValue)
{
    const ProgramResult result =
        Run({"ini", "get", Write(L"a.ini", c_settings), "window", "title"});

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
}

TEST_F(IniCommandTest, ReadsStandardInput)
{
    Write(L"a.ini", c_settings);

    for (const std::string arguments : {"get - Window height < $dir/a.ini", "get - Window height"})
        EXPECT_EQ(RunInShell("cat $dir/a.ini | $toolkit ini " + arguments).output, "480\n")
            << arguments;
}

TEST_F(IniCommandTest, FailsForAMissingFile)
{
    for (const std::string command : {"list", "check"}) {
        const ProgramResult result = Run({"ini", command, "/nonexistent.ini"});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.errors,
                  "toolkit: cannot read /nonexistent.ini: No such file or directory\n");
    }
}

TEST_F(IniCommandTest, FailsForADirectory)
{
    for (const std::string command : {"list", "check"}) {
        const ProgramResult result = Run({"ini", command, "/usr"});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.errors, "toolkit: cannot read /usr: Is a directory\n");
    }
}

TEST_F(IniCommandTest, FindsNothingInAValidFile)
{
    EXPECT_EQ(Check("; comment\n\n[Main]\na=1\n  \t\nb = \n[Other]\na=1\n", 0), "");
    EXPECT_EQ(Check("", 0), "");
}

TEST_F(IniCommandTest, FindsALineWithoutAnEqualsSign)
{
    EXPECT_EQ(Check("[Main]\n width 640\n", 1),
              "a.ini:2: ignored: no \"=\" in the line: width 640\n");
}

TEST_F(IniCommandTest, FindsAKeyAboveTheFirstSection)
{
    EXPECT_EQ(Check("\nwidth=640\n[Main]\n", 1),
              "a.ini:2: ignored: \"width\" is above the first section\n");
}

TEST_F(IniCommandTest, FindsASecondValueOfAKey)
{
    EXPECT_EQ(Check("[A]\r\nx=1\r\n[B]\r\nx=1\r\nx = 2\r\n", 1),
              "a.ini:5: ignored: \"x\" already has a value from line 4\n");
}

TEST_F(IniCommandTest, WarnsAboutARepeatedSection)
{
    EXPECT_EQ(Check("[A]\nx=1\n[B]\n[A]\nx=2\n", 1),
              "a.ini:4: warning: [A] continues the section from line 1\n"
              "a.ini:5: ignored: \"x\" already has a value from line 2\n");
}

TEST_F(IniCommandTest, WarnsAboutAKeyThatLooksLikeAComment)
{
    EXPECT_EQ(Check("[A]\n ; x = 1\n", 1),
              "a.ini:2: warning: a key, not a comment: \";\" is not in the first column\n");
}

TEST_F(IniCommandTest, WarnsAboutBytesThatAreNotUtf8)
{
    EXPECT_EQ(Check("[A]\r\nx=caf\xC3\xA9\ny=caf\xE9\n", 1),
              "a.ini:3: warning: not UTF-8, so the file is read as ISO 8859-1\n");
}

TEST_F(IniCommandTest, WarnsOnceAboutNullCharacters)
{
    using namespace std::string_literals;

    EXPECT_EQ(Check("[A]\r\nx=1\r\ny=\0\0\nz=\0\n"s, 1),
              "a.ini:3: warning: a null character: UTF-16 without a byte-order mark?\n");
    EXPECT_THAT(Check("[\0A\0]\0\n\0x\0=\0"s, 1),
                HasSubstr("a.ini:1: warning: a null character: UTF-16 without"));
}

TEST_F(IniCommandTest, AcceptsFilesWithAByteOrderMark)
{
    EXPECT_EQ(Check("\xEF\xBB\xBF[A]\nx=1\n", 0), "");
    EXPECT_EQ(Check(std::string("\xFF\xFE[\0A\0]\0\n\0", 10), 0), "");
    EXPECT_EQ(Check(std::string("\0\0\xFE\xFF\0\0\0[\0\0\0A\0\0\0]", 16), 0), "");
}

TEST_F(IniCommandTest, EscapesControlCharacters)
{
    EXPECT_EQ(Check("[A]\nx\x1B[31m\n", 1), "a.ini:2: ignored: no \"=\" in the line: x\\x1B[31m\n");
    EXPECT_EQ(Run({"ini", "list", Write(L"b.ini", "[\x1B]\n\x07=\xC2\x9B\n")}).output,
              "[\\x1B]\n\\x07=\\x9B\n");
}

} // namespace
} // namespace Toolkit::TestSupport
