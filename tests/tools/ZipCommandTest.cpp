#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <poll.h>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>
#include <vector>

#include "RunningCommand.h"
#include "ToolFixture.h"
#include "archive/RawZip.h"

namespace Toolkit::TestSupport {
namespace {

using testing::ContainsRegex;
using testing::StartsWith;

// The signature of an archive's end record, the length of one without a comment, and the offsets of
// its fields (APPNOTE, 4.3.16).
constexpr const char* c_endSignature = "PK\5\6";
constexpr std::size_t c_endLength = 22;
constexpr std::size_t c_countAt = 10;
constexpr std::size_t c_sizeAt = 12;
constexpr std::size_t c_offsetAt = 16;
constexpr std::size_t c_commentLengthAt = 20;

// Returns the archive with a ZIP64 end record and its locator (APPNOTE, 4.3.14 and 4.3.15). In the
// ordinary end record, the counts, the size and the offset are all 0xFF bytes, which direct readers
// to the ZIP64 values.
std::string AddZip64End(const std::string& archive)
{
    const std::size_t end = archive.size() - c_endLength;
    const auto toZip64Field = [&](std::size_t at, std::size_t size) {
        return archive.substr(end + at, size) + std::string(8 - size, '\0');
    };
    const std::string count = toZip64Field(c_countAt, 2);
    const std::string record = "PK\6\6" + PackNumber(44, 8) + PackNumber(45, 2) +
                               PackNumber(45, 2) + PackNumber(0, 8) + count + count +
                               toZip64Field(c_sizeAt, 4) + toZip64Field(c_offsetAt, 4);
    const std::string locator = "PK\6\7" + PackNumber(0, 4) + PackNumber(end, 8) + PackNumber(1, 4);
    return archive.substr(0, end) + record + locator + c_endSignature + PackNumber(0, 4) +
           std::string(12, '\xFF') + PackNumber(0, 2);
}

// Waits for writes to the files in a directory.
class DirectoryWatch {
public:
    explicit DirectoryWatch(const std::string& directory) : m_inotify(::inotify_init1(IN_CLOEXEC))
    {
        EXPECT_GE(::inotify_add_watch(m_inotify, directory.c_str(), IN_MODIFY), 0);
    }
    ~DirectoryWatch() { ::close(m_inotify); }

    DirectoryWatch(const DirectoryWatch&) = delete;
    DirectoryWatch& operator=(const DirectoryWatch&) = delete;

    // Fails if nothing is written within ten seconds.
    void WaitForAWrite() const
    {
        constexpr int timeoutMs = 10000;

        pollfd event{m_inotify, POLLIN, 0};
        EXPECT_EQ(::poll(&event, 1, timeoutMs), 1);
    }

private:
    const int m_inotify;
};

class ZipCommandTest : public ToolFixture {
protected:
    std::string WriteArchive(const std::vector<RawEntry>& entries) const
    {
        return Write(L"a.zip", RawZip(entries));
    }

    std::string WriteSampleArchive() const
    {
        return WriteArchive({{"folder/two.txt", "clear\nfog"},
                             {"One.txt", "fog\r\nsea\nFog again\n"},
                             {"folder/", ""}});
    }

    // Returns the directory to which the tests extract.
    std::string Target() const { return PathOf("target"); }

    // Returns whether nothing was extracted.
    bool IsTargetEmpty() const
    {
        return !std::filesystem::exists(Target()) || std::filesystem::is_empty(Target());
    }

    std::string MakeArchiveWithLink() const
    {
        RunInShell("cd $dir; ln -s /etc link; zip -q --symlinks link.zip link");
        return ReadWholeFile(PathOf("link.zip"));
    }

    void ExpectRefused(const std::string& archive, const std::string& message) const
    {
        const ProgramResult result =
            Run({"zip", "extract", Write(L"refused.zip", archive), Target()});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.errors, "toolkit: " + message + "\n");
        EXPECT_TRUE(IsTargetEmpty());
    }
};

TEST_F(ZipCommandTest, ListsTheEntries)
{
    const ProgramResult result = Run({"zip", "list", WriteSampleArchive()});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output,
                ContainsRegex("^ +19 [0-9: -]{19} One.txt\n +0 [0-9: -]{19} folder/\n +9 [0-9: "
                              "-]{19} folder/two.txt\n$"));
}

TEST_F(ZipCommandTest, ListsEntriesByFilterAndType)
{
    const std::string archive = WriteSampleArchive();

    // `[^\n]*` matches the time of the entry.
    EXPECT_THAT(Run({"zip", "list", archive, "--filter", "ONE*x"}).output,
                ContainsRegex("^ +19 [^\n]*One.txt\n$"));
    EXPECT_THAT(Run({"zip", "list", archive, "--type", "directories"}).output,
                ContainsRegex("^ +0 [^\n]*folder/\n$"));
    EXPECT_EQ(Run({"zip", "list", archive, "--filter", "x*"}).exitCode, 1);
}

TEST_F(ZipCommandTest, RejectsAnUnknownTypeAndNamesTheValidTypes)
{
    const ProgramResult result = Run({"zip", "list", WriteSampleArchive(), "--type", "links"});

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.errors, StartsWith("toolkit: --type: links not in {all,files,directories}"));
}

TEST_F(ZipCommandTest, PrintsTheBytesOfAnEntryWithCat)
{
    const std::string bytes("\0\x1B\xFF\n", 4);

    EXPECT_EQ(Run({"zip", "cat", WriteArchive({{"a", bytes}}), "a"}).output, bytes);
}

TEST_F(ZipCommandTest, ReportsWhyCatCannotReadAnEntry)
{
    constexpr std::uint16_t encrypted = 1;
    RawEntry damaged{"damaged", "data"};
    damaged.checksum = 1;
    RawEntry secret{"secret", "data"};
    secret.flags = encrypted;
    const std::string archive = WriteArchive({damaged, secret});

    EXPECT_EQ(Run({"zip", "cat", archive, "damaged"}).errors,
              "toolkit: the entry \"damaged\" is damaged\n");
    EXPECT_EQ(Run({"zip", "cat", archive, "secret"}).errors,
              "toolkit: the entry \"secret\" is encrypted\n");
    EXPECT_EQ(Run({"zip", "cat", archive, "other"}).errors,
              "toolkit: no entry \"other\" in " + archive + "\n");
}

TEST_F(ZipCommandTest, PrintsTheEntryAndLineNumberOfEachMatch)
{
    const std::string archive = WriteSampleArchive();

    const ProgramResult result = Run({"zip", "search", archive, "(?i)fog$"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "One.txt:1: fog\nfolder/two.txt:2: fog\n");
    EXPECT_EQ(Run({"zip", "search", archive, "fog", "--filter", "folder"}).output,
              "folder/two.txt:2: fog\n");
    EXPECT_EQ(Run({"zip", "search", archive, "nonexistent"}).exitCode, 1);
}

TEST_F(ZipCommandTest, EscapesUnprintableBytesInSearchResults)
{
    EXPECT_EQ(
        Run({"zip", "search", WriteArchive({{"a\x1B", "fog \x1B[2J caf\xE9\n"}}), "fog"}).output,
        "a\\x1B:1: fog \\x1B[2J caf\\xE9\n");
}

TEST_F(ZipCommandTest, FailsForAFileThatIsNotAnArchive)
{
    const std::string textFile = Write(L"a.txt", "not an archive");

    EXPECT_EQ(Run({"zip", "list", textFile}).errors,
              "toolkit: " + textFile + " is not a Zip archive\n");
    EXPECT_EQ(Run({"zip", "list", "/nonexistent.zip"}).errors,
              "toolkit: cannot read /nonexistent.zip: No such file or directory\n");
    EXPECT_EQ(Run({"zip", "list", textFile}).exitCode, 2);
}

TEST_F(ZipCommandTest, AcceptsAnEmptyArchive)
{
    const ProgramResult result = Run({"zip", "list", WriteArchive({})});

    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.exitCode, 1);
}

TEST_F(ZipCommandTest, ExtractsFilesAndDirectories)
{
    const ProgramResult result = Run({"zip", "extract", WriteSampleArchive(), Target()});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "One.txt\nfolder/\nfolder/two.txt\n");
    EXPECT_EQ(ReadWholeFile(Target() + "/One.txt"), "fog\r\nsea\nFog again\n");
    EXPECT_EQ(ReadWholeFile(Target() + "/folder/two.txt"), "clear\nfog");
}

TEST_F(ZipCommandTest, RefusesToExtractUnsafeRelativeNames)
{
    for (const std::string name : {"../x", "a/../../x", "a//x", "a/./x", ".."})
        ExpectRefused(RawZip({{"good", "x"}, {name, "x"}}),
                      "archive refused: unsafe entry name \"" + name + "\"");
}

TEST_F(ZipCommandTest, RefusesToExtractAbsoluteNames)
{
    const std::string archive = RawZip({{"good", "x"}, {"/tmp/x", "x"}});

    ExpectRefused(archive, "archive refused: absolute entry name \"/tmp/x\"");
    ExpectRefused(AddZip64End(archive), "archive refused: absolute entry name \"/tmp/x\"");
}

TEST_F(ZipCommandTest, RefusesToExtractLinks)
{
    const std::string archive = MakeArchiveWithLink();

    ExpectRefused(archive, "archive refused: \"link\" is neither a file nor a directory");
    ExpectRefused(AddZip64End(archive),
                  "archive refused: \"link\" is neither a file nor a directory");
}

TEST_F(ZipCommandTest, RefusesToExtractLinksIfTheCommentIsAnEndSignature)
{
    std::string archive = MakeArchiveWithLink();
    archive.replace(archive.size() - c_endLength + c_commentLengthAt, 2, PackNumber(4, 2));

    ExpectRefused(archive + c_endSignature,
                  "archive refused: \"link\" is neither a file nor a directory");
}

TEST_F(ZipCommandTest, RefusesToExtractAnArchiveWithAWrongEntryCount)
{
    const std::string archive = RawZip({{"a", "x"}, {"b", "x"}});
    const std::size_t end = archive.size() - c_endLength;
    std::string tooFew = archive;
    tooFew.replace(end + c_countAt, 2, PackNumber(1, 2));
    std::string tooMany = archive;
    tooMany.replace(end + c_countAt, 2, PackNumber(3, 2));

    for (const std::string& wrong : {tooFew, tooMany, AddZip64End(tooFew)})
        ExpectRefused(wrong, "archive refused: the central directory is damaged");
}

TEST_F(ZipCommandTest, ExtractsAZip64Archive)
{
    RunInShell("cd $dir; echo fog >a; zip -q -fz zip64.zip a");
    const std::string zip64End =
        Write(L"zip64End.zip", AddZip64End(RawZip({{"b", "sea"}, {"folder/c", "sun"}})));

    EXPECT_EQ(Run({"zip", "extract", PathOf("zip64.zip"), Target()}).output, "a\n");
    EXPECT_EQ(Run({"zip", "extract", zip64End, Target()}).output, "b\nfolder/c\n");

    EXPECT_EQ(ReadWholeFile(Target() + "/a"), "fog\n");
    EXPECT_EQ(ReadWholeFile(Target() + "/folder/c"), "sun");
}

TEST_F(ZipCommandTest, ExtractsAnArchiveAppendedToAProgram)
{
    const std::string program = Write(L"program", "#!/bin/sh\n" + RawZip({{"a", "fog"}}));

    EXPECT_EQ(Run({"zip", "extract", program, Target()}).errors, "");
    EXPECT_EQ(ReadWholeFile(Target() + "/a"), "fog");
}

TEST_F(ZipCommandTest, DoesNotExtractThroughALinkInTheTarget)
{
    std::filesystem::create_directory(Target());
    std::filesystem::create_directory(PathOf("elsewhere"));
    std::filesystem::create_directory_symlink(PathOf("elsewhere"), Target() + "/folder");

    EXPECT_EQ(Run({"zip", "extract", WriteSampleArchive(), Target()}).exitCode, 2);

    EXPECT_TRUE(std::filesystem::is_empty(PathOf("elsewhere")));
}

TEST_F(ZipCommandTest, DoesNotOverwriteFilesWhenExtracting)
{
    std::filesystem::create_directory(Target());
    Write(L"target/One.txt", "mine");

    const ProgramResult result = Run({"zip", "extract", WriteSampleArchive(), Target()});

    EXPECT_EQ(result.errors, "toolkit: cannot create One.txt: File exists\n");
    EXPECT_EQ(ReadWholeFile(Target() + "/One.txt"), "mine");
}

TEST_F(ZipCommandTest, StopsExtractingAtTheLimit)
{
    const std::string archive = WriteArchive({{"a", "12345"}, {"b", std::string(100000, 'x')}});

    const ProgramResult result = Run({"zip", "extract", archive, Target(), "--limit", "90000"});

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "toolkit: the entries are larger than the limit\n");
    EXPECT_EQ(result.output, "a\n");
    EXPECT_EQ(RunInShell("ls -A $dir/target").output, "a\n");
}

TEST_F(ZipCommandTest, LeavesNoFileAfterExtractingADamagedEntry)
{
    RawEntry damaged{"damaged", "data"};
    damaged.checksum = 1;

    EXPECT_EQ(Run({"zip", "extract", WriteArchive({damaged}), Target()}).exitCode, 2);

    EXPECT_TRUE(IsTargetEmpty());
}

TEST_F(ZipCommandTest, LeavesNoPartialFileWhenExtractingIsInterrupted)
{
    // Extracting 500 MiB takes much longer than sending a signal.
    RunInShell("cd $dir; truncate -s 500M big; zip -q -1 big.zip big; rm big");
    std::filesystem::create_directory(Target());
    const DirectoryWatch target(Target());
    RunningCommand command({"zip", "extract", PathOf("big.zip"), Target()});
    target.WaitForAWrite();

    EXPECT_EQ(command.SignalAndWait(SIGINT), -SIGINT);

    EXPECT_TRUE(IsTargetEmpty());
}

} // namespace
} // namespace Toolkit::TestSupport
