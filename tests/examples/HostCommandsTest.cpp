#include "support/FileSizeLimit.h"
#include "support/ScopedEnvironment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>
#include <utility>

#include "HostWithPlugIns.h"
#include "archive/RawZip.h"

namespace Toolkit::TestSupport {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

constexpr std::uint16_t c_encryptedFlag = 1; // marks an encrypted entry of a Zip archive

// Changes the working directory of this process and of the programs that it starts. The destructor
// restores it.
class ScopedWorkingDirectory {
public:
    explicit ScopedWorkingDirectory(const std::filesystem::path& directory)
        : m_oldDirectory(std::filesystem::current_path())
    {
        std::filesystem::current_path(directory);
    }
    ~ScopedWorkingDirectory() { std::filesystem::current_path(m_oldDirectory); }

    ScopedWorkingDirectory(const ScopedWorkingDirectory&) = delete;
    ScopedWorkingDirectory& operator=(const ScopedWorkingDirectory&) = delete;

private:
    const std::filesystem::path m_oldDirectory;
};

using HostCommandsTest = HostWithPlugIns;

TEST_F(HostCommandsTest, ListsAndSearchesAnArchive)
{
    const std::string archive = WriteArchive();
    const ServingHost host(m_host);
    const std::pair<Arguments, const char*> cases[] = {
        {{"list"}, "9\tfolder/two.txt\n19\tone.txt\n"},
        {{"list", "-filter", "ONE*"}, "19\tone.txt\n"},
        {{"search", "-pattern", "(?i)fog"},
         "folder/two.txt:2: fog\none.txt:1: fog\none.txt:3: Fog again\n"},
        {{"search", "-pattern", "^fog$", "-filter", "one*"}, "one.txt:1: fog\n"},
        {{"search", "-pattern", "no such text"}, ""}};

    for (auto [arguments, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        arguments.insert(arguments.end(), {"-archive", archive});
        EXPECT_EQ(RunForResult(host, arguments), expected);
    }
}

TEST_F(HostCommandsTest, SearchesEntriesWithUnusualContents)
{
    const std::string longLine(2 << 20, 'x');
    const std::string archive =
        Write("odd.zip", RawZip({{"lineEnds", "a\nfog\r\n\nfog"},
                                 {"latin", "caf\xE9 fog\n"},
                                 {"long", longLine + "fog\nfog\n"},
                                 {"nulls", std::string("fog\0 fog\n", 9)}}));
    const ServingHost host(m_host);

    EXPECT_EQ(RunForResult(host, {"search", "-archive", archive, "-pattern", "fog$"}),
              "latin:1: café fog\n"
              "lineEnds:2: fog\nlineEnds:4: fog\n"
              // Lines are split after 1 MiB, so the 2 MiB of "x" are lines 1 and 2.
              "long:3: fog\nlong:4: fog\n"
              "nulls:1: fog  fog\n");
}

TEST_F(HostCommandsTest, WarnsAboutDamagedAndEncryptedEntries)
{
    RawEntry damaged{"damaged", "fog one\nfog two\n"};
    damaged.checksum = 1;
    RawEntry secret{"secret", "fog\n"};
    secret.flags = c_encryptedFlag;
    const std::string archive = Write("odd.zip", RawZip({damaged, secret, {"intact", "fog\n"}}));
    ServingHost host(m_host);

    EXPECT_THAT(RunForResult(host, {"search", "-archive", archive, "-pattern", "fog"}),
                EndsWith("intact:1: fog\n"));
    Quit(host);

    EXPECT_THAT(m_host.Log(),
                AllOf(ContainsRegex("\n1 [^\n]*the entry \"damaged\" is damaged; matching lines"),
                      ContainsRegex("\n1 [^\n]*the entry \"secret\" is encrypted and was not")));
}

TEST_F(HostCommandsTest, EscapesControlCharactersInEntryNames)
{
    RawEntry secret{"\x1B]0;evil\x07\n0 1 : 1 : forged", "fog\n"};
    secret.flags = c_encryptedFlag;
    const std::string archive = Write("odd.zip", RawZip({secret}));
    ServingHost host(m_host);

    RunForResult(host, {"search", "-archive", archive, "-pattern", "fog"});
    Quit(host);

    EXPECT_THAT(m_host.Log(), HasSubstr("the entry \"\\x1B]0;evil\\x07\\x0A0 1 : 1 : forged\" is"));
    EXPECT_THAT(m_host.Log(), Not(HasSubstr("\x1B")));
}

TEST_F(HostCommandsTest, FindsLinesInTheFilesOfAFolder)
{
    Write("texts/b.txt", "clear\nfog one");
    Write("texts/a.txt", std::string("fog\0in it\n", 10));
    Write("texts/c.log", "fog\n");
    Write("texts/sub/d.txt", "fog\n");
    std::filesystem::create_directory_symlink("..", File("texts/sub/loop"));
    ASSERT_EQ(::mkfifo(File("texts/pipe").c_str(), 0600), 0);
    const ServingHost host(m_host);
    const std::pair<Arguments, std::string> cases[] = {
        {{}, "a.txt:1: fog in it\nb.txt:2: fog one\nc.log:1: fog\n"},
        {{"-files", "*.log"}, "c.log:1: fog\n"},
        {{"-deep"},
         "a.txt:1: fog in it\nb.txt:2: fog one\nc.log:1: fog\n"
         "sub/d.txt:1: fog\n"}};

    for (const auto& [options, expected] : cases) {
        Arguments arguments = {"find", "-folder", File("texts"), "-pattern", "fog"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_EQ(RunForResult(host, arguments), expected);
    }
}

TEST_F(HostCommandsTest, EncodesAndDecodesInBothEncodings)
{
    const ServingHost host(m_host);
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"encode", "base64", "Sea", "U2Vh\n"},
        {"encode", "base64", "", ""},
        {"decode", "base64", "U2V\r\nhUQ==\n", "SeaQ"},
        {"encode", "quoted-printable", "Möwe = gull\nend", "M=C3=B6we=20=3D=20gull\r\nend"},
        {"decode", "quoted-printable", "M=C3=B6we =\r\n=3D gull \r\n\nend", "Möwe = gull\n\nend"},
        {"decode", "quoted-printable", "end=\r\n", "end"},
    };

    for (const auto& [command, encoding, input, expected] : cases) {
        SCOPED_TRACE(input);
        const std::string path = Write("input", input);
        EXPECT_EQ(RunForResult(host, {command, "-in", path, "-as", encoding}), expected);
    }
}

TEST_F(HostCommandsTest, DecodesWhatItEncoded)
{
    std::string bytes;
    for (unsigned int i = 0; i < 200'000; ++i)
        bytes.push_back(static_cast<char>(i * i / 7));
    std::string text = "\n" + std::string(1000, ' ') + "\r\n";
    for (int i = 0; i < 5'000; ++i)
        text += i % 11 == 0 ? "\n" : i % 3 == 0 ? "ö=" : "word\t";
    const ServingHost host(m_host);

    for (const auto& [encoding, input] :
         {std::pair("base64", bytes), std::pair("quoted-printable", text)}) {
        SCOPED_TRACE(encoding);
        const std::string encoded =
            RunForResult(host, {"encode", "-in", Write("input", input), "-as", encoding});
        // At most 76 characters and a carriage return (RFC 2045).
        EXPECT_THAT(encoded, Not(ContainsRegex("[^\n]{78}")));
        Write("encoded", encoded);
        // EXPECT_EQ would print all the bytes.
        EXPECT_TRUE(RunForResult(host, {"decode", "-in", File("encoded"), "-as", encoding}) ==
                    input);
    }
}

TEST_F(HostCommandsTest, ReportsWhyACommandFails)
{
    const std::string text = Write("text", "=XY\n");
    const std::string bytes = Write("bytes", "\xFF\n");
    const std::string nulls = Write("nulls", std::string("a\0b\n", 4));
    const std::string archive = WriteArchive();
    const std::string pipe = File("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const ServingHost host(m_host);
    const std::pair<Arguments, std::string> cases[] = {
        {{"nothing"}, "unknown command"},
        {{"list"}, "the option -archive or its value is missing"},
        {{"list", "-archive", archive, "-deep"}, "unknown option -deep"},
        {{"list", "-archive", "/none.zip"}, "cannot find the archive /none.zip"},
        {{"list", "-archive", text}, text + " is not a readable archive"},
        {{"find", "-folder", "/none", "-pattern", "x"}, "cannot find the folder /none"},
        {{"encode", "-in", "/none", "-as", "base64"}, "cannot read /none"},
        {{"encode", "-in", pipe, "-as", "base64"}, "cannot read " + pipe},
        {{"encode", "-in", text, "-as", "rot13"},
         "the encoding must be base64 or quoted-printable, not \"rot13\""},
        {{"encode", "-in", bytes, "-as", "quoted-printable"},
         bytes + ", line 1: this is not UTF-8 text"},
        {{"decode", "-in", text, "-as", "quoted-printable"},
         text + ", line 1: this is not quoted-printable text"},
        {{"decode", "-in", nulls, "-as", "quoted-printable"},
         nulls + ", line 1: this is not quoted-printable text"},
        {{"decode", "-in", bytes, "-as", "base64"}, bytes + " is not Base64"},
        {{"throw-error"}, "thrown by a command"},
        {{"throw-number"}, "an unknown exception was thrown"},
        {{"fail-without-a-reason"}, "no reason given"}};

    for (const auto& [arguments, expected] : cases)
        EXPECT_EQ(RunForOutcome(host, arguments), "failed: " + expected);
    EXPECT_THAT(RunForOutcome(host, {"search", "-archive", archive, "-pattern", "("}),
                HasSubstr(" (@offset: 1) ("));
    EXPECT_THAT(ListDirectory(),
                UnorderedElementsAre("text", "bytes", "nulls", "pipe", "texts.zip"));
}

TEST_F(HostCommandsTest, LogsAFailureAndKeepsTheOldResult)
{
    Write("result", "old");
    ServingHost host(m_host);

    RunForOutcome(host, {"throw-error"});
    Quit(host);

    EXPECT_THAT(m_host.Log(), ContainsRegex("\n0 [0-9]+ : [0-9]+ : OnOperationEnded : "
                                            "1 throw-error: failed: thrown by a command\n"));
    EXPECT_EQ(ReadWholeFile(File("result")), "old");
    EXPECT_THAT(ListDirectory(), ElementsAre("result"));
}

TEST_F(HostCommandsTest, FailsWhenAResultCannotBeWritten)
{
    const std::string archive = WriteArchive();
    const ServingHost host(m_host);

    m_host.Run({"list", "-archive", archive, "-out", "/none/result"});

    EXPECT_EQ(host.AwaitOutcome("1 list"),
              "failed: cannot write /none/result: No such file or directory");
}

TEST_F(HostCommandsTest, WritesAResultToRegularFilesOnly)
{
    const std::string archive = WriteArchive();
    const std::string victim = Write("victim", "untouched");
    std::filesystem::create_symlink(victim, File("link"));
    std::filesystem::create_symlink(File("none"), File("dangling"));
    ASSERT_EQ(::mkfifo(File("pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(File("folder"));
    const ServingHost host(m_host);
    const std::pair<const char*, const char*> cases[] = {{"link", "it is a link"},
                                                         {"dangling", "it is a link"},
                                                         {"pipe", "it is not a regular file"},
                                                         {"folder", "it is not a regular file"}};

    int number = 0;
    for (const auto& [name, reason] : cases) {
        m_host.Run({"list", "-archive", archive, "-out", File(name)});
        EXPECT_EQ(host.AwaitOutcome(std::to_string(++number) + " list"),
                  "failed: cannot write " + File(name) + ": " + reason);
    }
    EXPECT_EQ(ReadWholeFile(victim), "untouched");
    EXPECT_FALSE(std::filesystem::exists(File("none")));
}

// In a shared directory, another user who guesses the name of a temporary file could create a link
// with that name. The names below are those that a predictable scheme would use.
TEST_F(HostCommandsTest, DoesNotFollowALinkWithAPredictableTemporaryName)
{
    const std::string archive = WriteArchive();
    const std::string victim = Write("victim", "untouched");
    const ServingHost host(m_host);
    const std::string process = std::to_string(host.GetProcessId());
    for (const std::string& suffix : {"." + process + "-1", "." + process, std::string(".tmp")})
        std::filesystem::create_symlink(victim, File("result" + suffix));

    EXPECT_EQ(RunForResult(host, {"list", "-archive", archive}),
              "9\tfolder/two.txt\n19\tone.txt\n");

    EXPECT_EQ(ReadWholeFile(victim), "untouched");
}

TEST_F(HostCommandsTest, KeepsThePermissionsOfAReplacedResult)
{
    using std::filesystem::perms;
    const std::string archive = WriteArchive();
    const ServingHost host(m_host);

    for (const perms permissions : {perms(0600), perms(0640), perms(0664)}) {
        Write("result", "old");
        std::filesystem::permissions(File("result"), permissions);
        RunForResult(host, {"list", "-archive", archive});
        EXPECT_EQ(std::filesystem::status(File("result")).permissions(), permissions);
    }
}

TEST_F(HostCommandsTest, AppliesTheUmaskToANewResult)
{
    const std::string archive = WriteArchive();
    const mode_t oldMask = ::umask(027);
    const ServingHost host(m_host);
    ::umask(oldMask);

    RunForResult(host, {"list", "-archive", archive});

    EXPECT_EQ(std::filesystem::status(File("result")).permissions(), std::filesystem::perms(0640));
}

// Only root can create a file that belongs to another user.
TEST_F(HostCommandsTest, DoesNotReplaceAFileOfAnotherUser)
{
    constexpr uid_t nobody = 65534;
    const std::string archive = WriteArchive();
    Write("result", "theirs");
    if (::chown(File("result").c_str(), nobody, nobody) != 0)
        GTEST_SKIP() << "needs root";
    const ServingHost host(m_host);

    EXPECT_EQ(RunForOutcome(host, {"list", "-archive", archive}),
              "failed: cannot write " + File("result") + ": it belongs to another user");
    EXPECT_EQ(ReadWholeFile(File("result")), "theirs");
}

// The limit simulates a full disk.
TEST_F(HostCommandsTest, ReportsThatAResultExceedsTheFileSizeLimit)
{
    const std::string input = Write("input", std::string(20'000, 'x'));
    const FileSizeLimit limit(16'384);
    const ServingHost host(m_host);

    EXPECT_EQ(RunForOutcome(host, {"encode", "-in", input, "-as", "base64"}),
              "failed: cannot write " + File("result") + ": File too large");
    EXPECT_FALSE(std::filesystem::exists(File("result")));
}

TEST_F(HostCommandsTest, ResolvesRelativePathsAgainstTheDirectoryOfTheCaller)
{
    const std::string archive = WriteArchive();
    const ServingHost host(m_host);

    const ScopedWorkingDirectory inside(m_directory.Path());
    m_host.Run({"list", "-archive", "texts.zip", "-out", "relative"});

    EXPECT_THAT(host.AwaitOutcome("1 list"), StartsWith("done in "));
    EXPECT_EQ(ReadWholeFile(File("relative")), "9\tfolder/two.txt\n19\tone.txt\n");
}

TEST_F(HostCommandsTest, AcceptsSpacesAndNonAsciiArgumentsInTheCLocale)
{
    const ScopedEnvironment locale("LC_ALL", "C");
    Write("a folder/nöte.txt", "å  b\n");
    const ServingHost host(m_host);

    EXPECT_EQ(RunForResult(host, {"find", "-folder", File("a folder"), "-pattern", "^å  \\w$"}),
              "nöte.txt:1: å  b\n");
}

} // namespace
} // namespace Toolkit::TestSupport
