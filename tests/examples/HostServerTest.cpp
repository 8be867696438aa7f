#include "support/ScopedEnvironment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <thread>

#include "ServingHost.h"
#include "archive/RawZip.h"
#include "archive/ZipWriter.h"

namespace Toolkit::Testing {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

using Arguments = std::vector<std::string>;

constexpr const char* c_handedOver = "Handed over to the host that serves.\n";

// Changes the working directory, and with it that of the programs which are started.
class ScopedDirectory {
public:
    explicit ScopedDirectory(const std::filesystem::path& directory)
        : m_oldDirectory(std::filesystem::current_path())
    {
        std::filesystem::current_path(directory);
    }
    ~ScopedDirectory() { std::filesystem::current_path(m_oldDirectory); }

    ScopedDirectory(const ScopedDirectory&) = delete;
    ScopedDirectory& operator=(const ScopedDirectory&) = delete;

private:
    const std::filesystem::path m_oldDirectory;
};

// An installed host with all plug-ins, and a directory for what the commands read and write.
class HostServerTest : public testing::Test {
protected:
    HostServerTest()
    {
        std::ofstream(m_host.ConfigurationPath() / "host.ini") << "[Log]\nlevel=2\n";
        for (const char* const library :
             {ARCHIVE_PLUG_IN, ENCODE_PLUG_IN, FIND_PLUG_IN, ODD_COMMANDS_PLUG_IN})
            m_host.InstallPlugIn(library);
    }

    std::string File(const std::string& name) const { return m_directory.Path() / name; }

    std::string Write(const std::string& name, const std::string& bytes) const
    {
        std::filesystem::create_directories(std::filesystem::path(File(name)).parent_path());
        std::ofstream(File(name), std::ios::binary) << bytes;
        return File(name);
    }

    // Three lines with fog in two files, one of them without a line end.
    std::string WriteArchive() const
    {
        const std::string path = File("texts.zip");
        WriteZip(m_directory.File(L"texts.zip"), {{L"one.txt", "fog\nclear\nFog again"},
                                                  {L"folder/", ""},
                                                  {L"folder/two.txt", "no\r\nfog\r\n"}});
        return path;
    }

    // Hands a command over whose result is to be in the file "result".
    void HandOver(Arguments arguments) const
    {
        arguments.insert(arguments.end(), {"-out", File("result")});
        const ProgramResult result = m_host.Run(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_EQ(result.output, c_handedOver);
    }

    // The bytes that a command gives.
    std::string ResultOf(const ServingHost& host, const Arguments& arguments)
    {
        HandOver(arguments);
        EXPECT_THAT(host.AwaitOutcome(std::to_string(++m_commands) + " " + arguments[0]),
                    StartsWith("done in "));
        return ReadWholeFile(File("result"));
    }

    // What the host shows at the end of a command.
    std::string OutcomeOf(const ServingHost& host, const Arguments& arguments)
    {
        HandOver(arguments);
        return host.AwaitOutcome(std::to_string(++m_commands) + " " + arguments[0]);
    }

    void Quit(ServingHost& host) const
    {
        EXPECT_EQ(m_host.Run({"-quit"}).output, c_handedOver);
        host.AwaitRest();
        EXPECT_EQ(host.WaitForExitCode(), 0);
    }

    std::vector<std::string> NamesInDirectory() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_directory.Path()))
            names.push_back(entry.path().filename());
        return names;
    }

    const InstalledProgram m_host{HOST_PROGRAM};
    const TempDir m_directory;
    int m_commands = 0;
};

TEST_F(HostServerTest, ArchiveCommandsLookIntoAnArchive)
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
        EXPECT_EQ(ResultOf(host, arguments), expected);
    }
}

TEST_F(HostServerTest, SearchTakesEntriesAsTheyAre)
{
    const std::string longLine(2 << 20, 'x');
    const std::string archive =
        Write("odd.zip", RawZip({{"blocks", "a\nfog\r\n\nfog"},
                                 {"latin", "caf\xE9 fog\n"},
                                 {"long", longLine + "fog\nfog\n"},
                                 {"nulls", std::string("fog\0 fog\n", 9)}}));
    const ServingHost host(m_host);

    EXPECT_EQ(ResultOf(host, {"search", "-archive", archive, "-pattern", "fog$"}),
              "blocks:2: fog\nblocks:4: fog\n"
              "latin:1: café fog\n"
              // No text has lines of more than 1 MiB: it comes in pieces.
              "long:3: fog\nlong:4: fog\n"
              "nulls:1: fog  fog\n");
}

TEST_F(HostServerTest, WhatCannotBeReadOfAnArchiveIsAWarning)
{
    constexpr std::uint16_t encrypted = 1;
    RawEntry damaged{"damaged", "fog one\nfog two\n"};
    damaged.checksum = 1;
    RawEntry secret{"secret", "fog\n"};
    secret.flags = encrypted;
    const std::string archive = Write("odd.zip", RawZip({damaged, secret, {"whole", "fog\n"}}));
    ServingHost host(m_host);

    EXPECT_THAT(ResultOf(host, {"search", "-archive", archive, "-pattern", "fog"}),
                EndsWith("whole:1: fog\n"));
    Quit(host);

    EXPECT_THAT(m_host.Log(),
                AllOf(ContainsRegex("\n1 [^\n]*the entry damaged is damaged, and was searched"),
                      ContainsRegex("\n1 [^\n]*the entry secret is encrypted, and was not")));
}

TEST_F(HostServerTest, FindSearchesAFolder)
{
    Write("texts/b.txt", "clear\nfog one");
    Write("texts/a.txt", std::string("fog\0in it\n", 10));
    Write("texts/c.log", "fog\n");
    Write("texts/sub/d.txt", "fog\n");
    std::filesystem::create_directory_symlink("..", File("texts/sub/loop"));
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
        EXPECT_EQ(ResultOf(host, arguments), expected);
    }
}

TEST_F(HostServerTest, EncodeAndDecodeKnowTwoEncodings)
{
    const ServingHost host(m_host);
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"encode", "base64", "Sea", "U2Vh\n"},
        {"encode", "base64", "", ""},
        {"decode", "base64", "U2V\r\nhUQ==\n", "SeaQ"},
        {"encode", "quoted-printable", "Möwe = gull\nend", "M=C3=B6we=20=3D=20gull\r\nend"},
        {"decode", "quoted-printable", "M=C3=B6we =\r\n=3D gull \r\n\nend", "Möwe = gull\n\nend"},
    };

    for (const auto& [command, encoding, input, expected] : cases) {
        SCOPED_TRACE(input);
        const std::string path = Write("input", input);
        EXPECT_EQ(ResultOf(host, {command, "-in", path, "-as", encoding}), expected);
    }
}

TEST_F(HostServerTest, WhatIsEncodedDecodesToTheSame)
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
            ResultOf(host, {"encode", "-in", Write("input", input), "-as", encoding});
        EXPECT_THAT(encoded, Not(ContainsRegex("[^\n]{78}")));
        Write("encoded", encoded);
        EXPECT_TRUE(ResultOf(host, {"decode", "-in", File("encoded"), "-as", encoding}) == input);
    }
}

TEST_F(HostServerTest, FailuresSayWhy)
{
    const std::string text = Write("text", "=XY\n");
    const std::string bytes = Write("bytes", "\xFF\n");
    const std::string archive = WriteArchive();
    const ServingHost host(m_host);
    const std::pair<Arguments, std::string> cases[] = {
        {{"nothing"}, "there is no such command"},
        {{"list"}, "the option -archive is missing, or its value is"},
        {{"list", "-archive", "/none.zip"}, "there is no archive /none.zip"},
        {{"list", "-archive", text}, text + " is no archive that can be read"},
        {{"find", "-folder", "/none", "-pattern", "x"}, "there is no folder /none"},
        {{"encode", "-in", "/none", "-as", "base64"}, "cannot read /none"},
        {{"encode", "-in", text, "-as", "rot13"},
         "the encodings are base64 and quoted-printable, not rot13"},
        {{"encode", "-in", bytes, "-as", "quoted-printable"},
         bytes + ", line 1: this is no text in UTF-8"},
        {{"decode", "-in", text, "-as", "quoted-printable"},
         text + ", line 1: this is no text in quoted-printable"},
        {{"decode", "-in", bytes, "-as", "base64"}, bytes + " is not Base64"},
        {{"throw-error"}, "thrown by a command"},
        {{"throw-number"}, "something was thrown"},
        {{"fail"}, "it does not say why"}};

    for (const auto& [arguments, expected] : cases)
        EXPECT_EQ(OutcomeOf(host, arguments), "failed: " + expected);
    EXPECT_THAT(OutcomeOf(host, {"search", "-archive", archive, "-pattern", "("}),
                HasSubstr("missing )"));
    EXPECT_THAT(NamesInDirectory(), testing::UnorderedElementsAre("text", "bytes", "texts.zip"));
}

TEST_F(HostServerTest, FailureIsLoggedAndLeavesTheOldResult)
{
    Write("result", "old");
    ServingHost host(m_host);

    OutcomeOf(host, {"throw-error"});
    Quit(host);

    EXPECT_THAT(m_host.Log(), ContainsRegex("\n0 [0-9]+ : [0-9]+ : OnOperationEnded : "
                                            "1 throw-error: failed: thrown by a command\n"));
    EXPECT_EQ(ReadWholeFile(File("result")), "old");
    EXPECT_THAT(NamesInDirectory(), ElementsAre("result"));
}

TEST_F(HostServerTest, ResultThatCannotBeWrittenIsAFailure)
{
    const std::string archive = WriteArchive();
    const ServingHost host(m_host);

    m_host.Run({"list", "-archive", archive, "-out", "/none/result"});

    EXPECT_EQ(host.AwaitOutcome("1 list"), "failed: cannot write /none/result");
}

TEST_F(HostServerTest, RelativePathsMeanTheDirectoryOfTheLaterStart)
{
    const std::string archive = WriteArchive();
    const ServingHost host(m_host);

    const ScopedDirectory inside(m_directory.Path());
    m_host.Run({"list", "-archive", "texts.zip", "-out", "relative"});

    EXPECT_THAT(host.AwaitOutcome("1 list"), StartsWith("done in "));
    EXPECT_EQ(ReadWholeFile(File("relative")), "9\tfolder/two.txt\n19\tone.txt\n");
}

TEST_F(HostServerTest, BlanksAndOtherScriptsArriveInEveryLocale)
{
    const ScopedEnvironment locale("LC_ALL", "C");
    Write("ein Ordner/nöte.txt", "å  b\n");
    const ServingHost host(m_host);

    EXPECT_EQ(ResultOf(host, {"find", "-folder", File("ein Ordner"), "-pattern", "^å  \\w$"}),
              "nöte.txt:1: å  b\n");
}

TEST_F(HostServerTest, LaterStartsSayWhatTheyCannotHandOver)
{
    const ServingHost host(m_host);
    const std::pair<Arguments, const char*> cases[] = {
        {{"list"},
         "The command cannot be handed over: the option -out is missing, or its value is"},
        {{"find", "-pattern", "a \"b", "-out", "x"},
         "No argument may hold both blanks and quotes."}};

    for (const auto& [arguments, message] : cases) {
        const ProgramResult result = m_host.Run(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.errors, std::string("host: ") + message + "\n");
    }
}

TEST_F(HostServerTest, WithoutAHostThatServesCommandsFail)
{
    for (const Arguments& arguments : {Arguments{"list", "-out", "x"}, Arguments{"-quit"}}) {
        const ProgramResult result = m_host.Run(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.errors, "host: No host serves. Start one with -serve.\n");
    }
}

TEST_F(HostServerTest, SecondHostThatWouldServeLeavesItToTheFirst)
{
    ServingHost host(m_host);

    const ProgramResult result = m_host.Run({"-serve"});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, c_handedOver);
    EXPECT_EQ(host.AwaitLine("Serving already"), "Serving already");
    Quit(host);
}

// Eight processes at once, each followed by the next of its kind: 200 commands.
TEST_F(HostServerTest, NoCommandOfManyIsLost)
{
    constexpr int processes = 8;
    constexpr int commandsOfEach = 25;
    ZipContent content;
    for (int i = 0; i < processes * commandsOfEach; ++i)
        content.push_back({L"entry " + std::to_wstring(i), "line " + std::to_string(i) + "\n"});
    WriteZip(m_directory.File(L"many.zip"), content);
    ServingHost host(m_host);
    const auto name = [](int i) { return "result" + std::to_string(i); };

    std::vector<std::thread> threads;
    for (int process = 0; process < processes; ++process) {
        threads.emplace_back([&, process] {
            for (int i = process; i < processes * commandsOfEach; i += processes) {
                const std::string pattern = "^line " + std::to_string(i) + "$";
                const ProgramResult result =
                    m_host.Run({"search", "-archive", File("many.zip"), "-pattern", pattern, "-out",
                                File(name(i))});
                EXPECT_EQ(result.exitCode, 0) << result.errors;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(m_host.Run({"-quit"}).exitCode, 0);
    const std::vector<std::string> shown = host.AwaitRest();
    EXPECT_EQ(host.WaitForExitCode(), 0);

    for (int i = 0; i < processes * commandsOfEach; ++i) {
        const std::string number = std::to_string(i);
        EXPECT_EQ(ReadWholeFile(File(name(i))), "entry " + number + ":1: line " + number + "\n");
    }
    const auto isDone = [](const std::string& line) {
        return line.find(" search: done in ") != std::string::npos;
    };
    EXPECT_EQ(std::count_if(shown.begin(), shown.end(), isDone), 200);
    EXPECT_THAT(m_host.Log(),
                AllOf(HasSubstr(" : 200 search: done in "), Not(HasSubstr("failed"))));
}

// Some starts meet the host while it ends: what they call handed over is done all the same.
TEST_F(HostServerTest, NoCommandIsLostWhileTheHostEnds)
{
    const std::string archive = WriteArchive();
    ServingHost host(m_host);
    std::vector<std::thread> threads;
    std::vector<int> handedOver(8, 0);
    const auto name = [](std::size_t thread, int i) {
        return "result" + std::to_string(thread) + "-" + std::to_string(i);
    };

    for (std::size_t thread = 0; thread < handedOver.size(); ++thread) {
        threads.emplace_back([&, thread] {
            int& i = handedOver[thread];
            while (
                m_host.Run({"list", "-archive", archive, "-out", File(name(thread, i))}).exitCode ==
                0)
                ++i;
        });
    }
    host.AwaitLine("20 list: done");
    EXPECT_EQ(m_host.Run({"-quit"}).exitCode, 0);
    host.AwaitRest();
    EXPECT_EQ(host.WaitForExitCode(), 0);
    for (std::thread& thread : threads)
        thread.join();

    for (std::size_t thread = 0; thread < handedOver.size(); ++thread) {
        for (int i = 0; i < handedOver[thread]; ++i)
            EXPECT_TRUE(std::filesystem::exists(File(name(thread, i)))) << name(thread, i);
    }
}

TEST_F(HostServerTest, QuitWaitsForTheCommandsBeforeIt)
{
    const std::string archive = WriteArchive();
    ServingHost host(m_host);

    HandOver({"wait", "-until", File("go")});
    for (const char* const name : {"second", "third"})
        m_host.Run({"list", "-archive", archive, "-out", File(name)});
    m_host.Run({"-quit"});
    EXPECT_FALSE(std::filesystem::exists(File("result")));
    Write("go", "");
    host.AwaitRest();

    EXPECT_EQ(host.WaitForExitCode(), 0);
    EXPECT_EQ(ReadWholeFile(File("result")), "half of it\nthe other half\n");
    for (const char* const name : {"second", "third"})
        EXPECT_EQ(ReadWholeFile(File(name)), "9\tfolder/two.txt\n19\tone.txt\n");
}

TEST_F(HostServerTest, QuitLeavesNothingBehindButTheWholeLog)
{
    const std::string archive = WriteArchive();
    ServingHost host(m_host);
    EXPECT_TRUE(std::filesystem::is_socket(host.Socket()));

    ResultOf(host, {"list", "-archive", archive});
    Quit(host);

    EXPECT_FALSE(std::filesystem::exists(host.Socket()));
    EXPECT_THAT(m_host.Log(), ContainsRegex("Serving at (.|\n)*"
                                            "1 list: started by list -archive (.|\n)*"
                                            "1 list: done in [0-9]+ ms, 28 bytes in (.|\n)*"
                                            "plug-in find stops(.|\n)*"
                                            "plug-in encode stops(.|\n)*"
                                            "plug-in archive stops(.|\n)*"
                                            "Stopping after [0-9]+ ms\n$"));
}

TEST_F(HostServerTest, HostThatWasKilledIsReplacedByTheNext)
{
    const std::string archive = WriteArchive();
    ServingHost killed(m_host);
    HandOver({"wait", "-until", File("never")});
    killed.AwaitLine("1 wait: started");

    killed.Send(SIGKILL);
    EXPECT_EQ(killed.WaitForExitCode(), -SIGKILL);
    EXPECT_TRUE(std::filesystem::is_socket(killed.Socket()));
    EXPECT_FALSE(std::filesystem::exists(File("result")));
    ServingHost next(m_host);

    EXPECT_EQ(ResultOf(next, {"list", "-archive", archive}), "9\tfolder/two.txt\n19\tone.txt\n");
    Quit(next);
    EXPECT_FALSE(std::filesystem::exists(next.Socket()));
}

TEST_F(HostServerTest, SignalGivesUpWhatRunsAndStopsInOrder)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        ServingHost host(m_host);
        HandOver({"wait", "-until", File("never")});
        host.AwaitLine("1 wait: started");

        host.Send(signal);

        EXPECT_EQ(host.AwaitOutcome("1 wait"), "failed: cancelled");
        host.AwaitRest();
        EXPECT_EQ(host.WaitForExitCode(), 0);
        EXPECT_FALSE(std::filesystem::exists(host.Socket()));
        EXPECT_THAT(m_host.Log(), ContainsRegex("Stopping after [0-9]+ ms\n$"));
        EXPECT_THAT(NamesInDirectory(), SizeIs(0));
    }
}

// The plug-ins are found where the first host was told.
TEST_F(HostServerTest, RestartServesAgainByTheSameCommandLine)
{
    const std::string archive = WriteArchive();
    const std::filesystem::path plugIns = m_directory.Path() / "some plug-ins";
    std::filesystem::rename(m_host.PlugInsPath(), plugIns);
    ServingHost host(m_host, {"-serve", "-quiet", "-plugins", plugIns});

    EXPECT_EQ(m_host.Run({"-restart"}).output, c_handedOver);
    EXPECT_EQ(host.WaitForExitCode(), 0);
    host.AwaitService();

    EXPECT_EQ(ResultOf(host, {"list", "-archive", archive}), "9\tfolder/two.txt\n19\tone.txt\n");
    EXPECT_EQ(m_host.Run({"-quit"}).exitCode, 0);
    host.AwaitRest();
    EXPECT_FALSE(std::filesystem::exists(host.Socket()));
    // The new host began the log when that of the old one was complete.
    EXPECT_THAT(m_host.Log(), AllOf(Not(HasSubstr("ActivateRestartProcess")),
                                    HasSubstr(">>> WaitingForPreviousProcessFinish()"),
                                    HasSubstr(">>> RestartProcessFinish()"),
                                    ContainsRegex("Stopping after [0-9]+ ms\n$")));
}

TEST_F(HostServerTest, HostThatRunsBesideItHasALogOfItsOwn)
{
    Write("notes.txt", "clear\n");
    const std::string settings = Write("other.ini", "[Text]\nfile=notes.txt\nfind=clear\n");
    ServingHost host(m_host);

    const ProgramResult result = m_host.Run({"-config", settings});
    Quit(host);

    const std::string log = "/tmp/" + m_host.Name() + "-second.qvlog";
    EXPECT_THAT(result.output, AllOf(HasSubstr("Another instance runs   yes\n"),
                                     HasSubstr("Log                     " + log + "\n"),
                                     EndsWith("1 of 1 lines contain \"clear\".\n")));
    EXPECT_THAT(ReadWholeFile(log), HasSubstr("1 of 1 lines"));
    EXPECT_THAT(m_host.Log(), AllOf(HasSubstr("Serving at"), Not(HasSubstr("1 of 1 lines"))));
    std::filesystem::remove(log);
}

} // namespace
} // namespace Toolkit::Testing
