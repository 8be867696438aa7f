#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ToolFixture.h"
#include "archive/RawZip.h"

namespace Toolkit::TestSupport {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

class ZipCommandTest : public ToolFixture {
protected:
    std::string WriteRaw(const std::vector<RawEntry>& entries) const
    {
        return Write(L"a.zip", RawZip(entries));
    }

    std::string WriteUsual() const
    {
        return WriteRaw({{"folder/two.txt", "clear\nfog"},
                         {"One.txt", "fog\r\nsea\nFog again\n"},
                         {"folder/", ""}});
    }

    // Where the tests extract to.
    std::string Target() const { return PathOf("target"); }

    // Whether nothing at all was extracted.
    bool IsTargetEmpty() const
    {
        return !std::filesystem::exists(Target()) || std::filesystem::is_empty(Target());
    }

    void ExpectRefused(const std::vector<RawEntry>& entries, const std::string& message) const
    {
        const ProgramResult result = Run({"zip", "extract", WriteRaw(entries), Target()});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.errors, "toolkit: " + message + "\n");
        EXPECT_TRUE(IsTargetEmpty());
    }
};

TEST_F(ZipCommandTest, ListsTheEntries)
{
    const ProgramResult result = Run({"zip", "list", WriteUsual()});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output,
                ContainsRegex("^ +19 [0-9: -]{19} One.txt\n +0 [0-9: -]{19} folder/\n +9 [0-9: "
                              "-]{19} folder/two.txt\n$"));
}

TEST_F(ZipCommandTest, SelectsEntriesLikeTheLibrary)
{
    const std::string archive = WriteUsual();

    EXPECT_THAT(Run({"zip", "list", archive, "--filter", "ONE*x"}).output,
                ContainsRegex("^ +19 [^\n]*One.txt\n$"));
    EXPECT_THAT(Run({"zip", "list", archive, "--type", "directories"}).output,
                ContainsRegex("^ +0 [^\n]*folder/\n$"));
    EXPECT_EQ(Run({"zip", "list", archive, "--filter", "x*"}).exitCode, 1);
    EXPECT_EQ(Run({"zip", "list", archive, "--type", "links"}).exitCode, 2);
}

TEST_F(ZipCommandTest, PrintsTheBytesInCat)
{
    const std::string bytes("\0\x1B\xFF\n", 4);

    EXPECT_EQ(Run({"zip", "cat", WriteRaw({{"a", bytes}}), "a"}).output, bytes);
}

TEST_F(ZipCommandTest, ReportsWhatItCannotReadInCat)
{
    constexpr std::uint16_t encrypted = 1;
    RawEntry damaged{"damaged", "data"};
    damaged.checksum = 1;
    RawEntry secret{"secret", "data"};
    secret.flags = encrypted;
    const std::string archive = WriteRaw({damaged, secret});

    EXPECT_EQ(Run({"zip", "cat", archive, "damaged"}).errors,
              "toolkit: the entry is damaged: damaged\n");
    EXPECT_EQ(Run({"zip", "cat", archive, "secret"}).errors,
              "toolkit: the entry is encrypted: secret\n");
    EXPECT_EQ(Run({"zip", "cat", archive, "other"}).errors,
              "toolkit: there is no entry other in " + archive + "\n");
}

TEST_F(ZipCommandTest, PrintsEntryAndLineInSearch)
{
    const std::string archive = WriteUsual();

    const ProgramResult result = Run({"zip", "search", archive, "(?i)fog$"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "One.txt:1: fog\nfolder/two.txt:2: fog\n");
    EXPECT_EQ(Run({"zip", "search", archive, "fog", "--filter", "folder"}).output,
              "folder/two.txt:2: fog\n");
    EXPECT_EQ(Run({"zip", "search", archive, "nonesuch"}).exitCode, 1);
}

TEST_F(ZipCommandTest, ShowsForeignBytesAsTextInSearch)
{
    EXPECT_EQ(Run({"zip", "search", WriteRaw({{"a\x1B", "fog \x1B[2J caf\xE9\n"}}), "fog"}).output,
              "a\\x1B:1: fog \\x1B[2J caf\\xE9\n");
}

TEST_F(ZipCommandTest, FailsForWhatIsNoArchive)
{
    const std::string text = Write(L"a.txt", "no archive at all");

    EXPECT_EQ(Run({"zip", "list", text}).errors, "toolkit: " + text + " is no Zip archive\n");
    EXPECT_EQ(Run({"zip", "list", "/nonesuch.zip"}).errors,
              "toolkit: cannot read /nonesuch.zip: No such file or directory\n");
    EXPECT_EQ(Run({"zip", "list", text}).exitCode, 2);
}

TEST_F(ZipCommandTest, AcceptsAnEmptyArchive)
{
    const ProgramResult result = Run({"zip", "list", WriteRaw({})});

    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.exitCode, 1);
}

TEST_F(ZipCommandTest, ExtractsFilesAndDirectories)
{
    const ProgramResult result = Run({"zip", "extract", WriteUsual(), Target()});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "One.txt\nfolder/\nfolder/two.txt\n");
    EXPECT_EQ(ReadWholeFile(Target() + "/One.txt"), "fog\r\nsea\nFog again\n");
    EXPECT_EQ(ReadWholeFile(Target() + "/folder/two.txt"), "clear\nfog");
}

TEST_F(ZipCommandTest, RefusesToExtractNamesThatLeadElsewhere)
{
    for (const std::string name : {"../x", "a/../../x", "a//x", "a/./x", ".."})
        ExpectRefused({{"good", "x"}, {name, "x"}},
                      "refused, a name that leads elsewhere: " + name);
}

TEST_F(ZipCommandTest, RefusesToExtractAbsoluteNames)
{
    ExpectRefused({{"good", "x"}, {"/tmp/x", "x"}}, "refused, an absolute name: /tmp/x");
}

TEST_F(ZipCommandTest, RefusesToExtractLinks)
{
    Shell("cd $dir; ln -s /etc link; zip -q --symlinks a.zip link");

    const ProgramResult result = Run({"zip", "extract", PathOf("a.zip"), Target()});

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "toolkit: refused, neither file nor directory: link\n");
    EXPECT_TRUE(IsTargetEmpty());
}

TEST_F(ZipCommandTest, FollowsNoLinkInTheDirectoryInExtract)
{
    std::filesystem::create_directory(Target());
    std::filesystem::create_directory(PathOf("elsewhere"));
    std::filesystem::create_directory_symlink(PathOf("elsewhere"), Target() + "/folder");

    EXPECT_EQ(Run({"zip", "extract", WriteUsual(), Target()}).exitCode, 2);

    EXPECT_TRUE(std::filesystem::is_empty(PathOf("elsewhere")));
}

TEST_F(ZipCommandTest, OverwritesNothingInExtract)
{
    std::filesystem::create_directory(Target());
    Write(L"target/One.txt", "mine");

    const ProgramResult result = Run({"zip", "extract", WriteUsual(), Target()});

    EXPECT_EQ(result.errors, "toolkit: cannot create One.txt: File exists\n");
    EXPECT_EQ(ReadWholeFile(Target() + "/One.txt"), "mine");
}

TEST_F(ZipCommandTest, StopsExtractAtTheLimit)
{
    const std::string archive = WriteRaw({{"a", "12345"}, {"b", std::string(100000, 'x')}});

    const ProgramResult result = Run({"zip", "extract", archive, Target(), "--limit", "90000"});

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "toolkit: the entries are larger than the limit\n");
    EXPECT_EQ(Shell("ls -A $dir/target").output, "a\n");
}

TEST_F(ZipCommandTest, KeepsNothingOfADamagedEntryInExtract)
{
    RawEntry damaged{"damaged", "data"};
    damaged.checksum = 1;

    EXPECT_EQ(Run({"zip", "extract", WriteRaw({damaged}), Target()}).exitCode, 2);

    EXPECT_TRUE(IsTargetEmpty());
}

} // namespace
} // namespace Toolkit::TestSupport
