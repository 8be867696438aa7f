#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "InstalledProgram.h"

namespace Toolkit::TestSupport {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

class HostTest : public testing::Test {
protected:
    // Writes a file to the host's configuration path, where the host looks for its settings.
    std::string WriteFile(const std::string& name, const std::string& text) const
    {
        const std::filesystem::path path = m_host.ConfigurationPath() / name;
        std::ofstream(path) << text;
        return path;
    }

    void InstallShippedFiles() const
    {
        const std::filesystem::path source = TOOLKIT_SOURCE_DIR "/examples/host";
        for (const char* const name : {"host.ini", "logbook.txt"})
            std::filesystem::copy_file(source / name, m_host.ConfigurationPath() / name);
    }

    void InstallSmallText() const
    {
        WriteFile("notes.txt", "fog one\nclear\nFogbank\n");
        WriteFile("host.ini", "[Text]\nfile=notes.txt\nfind=fog\n");
    }

    std::vector<std::string> ReadLogLines() const
    {
        std::vector<std::string> lines;
        std::istringstream log(m_host.Log());
        for (std::string line; std::getline(log, line);)
            lines.push_back(line);
        return lines;
    }

    const InstalledProgram m_host{HOST_PROGRAM};
};

TEST_F(HostTest, ShowsFactsAboutTheProgramAndPlatform)
{
    InstallShippedFiles();

    const ProgramResult result = m_host.Run({});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    const std::pair<const char*, std::string> rows[] = {
        {"Application             ", m_host.Name()},
        {"Configuration path      ", m_host.ConfigurationPath()},
        {"Platform                ", "Unix "},
        {"Library version         ", "1.0.332.3"},
        {"wxWidgets version       ", "3.2."},
        {"Already running         ", "no"},
        {"Settings                ", m_host.ConfigurationPath() / "host.ini"},
        {"Log                     ", m_host.LogPath()},
    };
    for (const auto& [label, value] : rows)
        EXPECT_THAT("\n" + result.output, HasSubstr("\n" + (label + value)));
}

TEST_F(HostTest, CountsTheLinesThatContainTheText)
{
    InstallShippedFiles();
    constexpr std::pair<const char*, const char*> cases[] = {
        {"fog", "9 of 208 lines contain \"fog\".\n"},
        {"FOG", "9 of 208 lines contain \"FOG\".\n"},
        {"Ångström", "1 of 208 lines contain \"Ångström\".\n"},
        {"no such text", "0 of 208 lines contain \"no such text\".\n"},
        {"", "208 of 208 lines contain \"\".\n"},
    };

    for (const auto& [wanted, summary] : cases) {
        SCOPED_TRACE(wanted);
        const ProgramResult result = m_host.Run({"-find", wanted});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_THAT(result.output, testing::EndsWith(summary));
    }
}

TEST_F(HostTest, CompletesTheLogBeforeExiting)
{
    InstallSmallText();

    m_host.Run({});

    const std::string begin = "2 [0-9]+ : [0-9]+ : ";
    EXPECT_THAT(ReadLogLines(),
                ElementsAre(MatchesRegex(begin + "Run : Settings read: .*/host.ini"),
                            MatchesRegex("2  : wx : [0-9]+ : Process [0-9]+ of the user .*"),
                            MatchesRegex(begin + "Examine : line 1: fog one"),
                            MatchesRegex(begin + "Examine : line 3: Fogbank"),
                            MatchesRegex(begin + "Search : 2 of 3 lines contain \"fog\"."),
                            MatchesRegex(begin + "Release : Stopping after [0-9]+ ms")));
}

TEST_F(HostTest, ReadsTheSettingsFileNamedByAnOption)
{
    WriteFile("notes.txt", "clear\n");
    const std::string settings = WriteFile("other.ini", "[Text]\nfile=notes.txt\nfind=clear\n");

    const ProgramResult result = m_host.Run({"-config", settings});

    EXPECT_THAT(result.output, HasSubstr("1 of 1 lines contain \"clear\".\n"));
}

TEST_F(HostTest, AcceptsAnAbsolutePathInTheSettings)
{
    const TempDir elsewhere;
    elsewhere.WriteFile(L"notes.txt", "clear\n");
    const std::string text = elsewhere.Path() / "notes.txt";
    WriteFile("host.ini", "[Text]\nfile=" + text + "\nfind=clear\n");

    const ProgramResult result = m_host.Run({});

    EXPECT_THAT(result.output, HasSubstr("1 of 1 lines contain \"clear\".\n"));
}

TEST_F(HostTest, ReadsTheLogNameFromTheSettings)
{
    const std::string log = m_host.Name() + "-named";
    WriteFile("notes.txt", "clear\n");
    WriteFile("host.ini", "[Log]\nname=" + log + "\n[Text]\nfile=notes.txt\n");

    const ProgramResult result = m_host.Run({});

    const std::string path = "/tmp/" + log + ".qvlog";
    EXPECT_THAT(result.output, HasSubstr("\nLog                     " + path + "\n"));
    EXPECT_THAT(ReadWholeFile(path), HasSubstr("Settings read"));
    std::filesystem::remove(path);
}

TEST_F(HostTest, PrintsNothingButStillLogsWhenQuiet)
{
    InstallSmallText();

    const ProgramResult result = m_host.Run({"-quiet"});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(m_host.Log(), HasSubstr("2 of 3 lines contain \"fog\".\n"));
}

TEST_F(HostTest, PrefersTheLogLevelOfTheCommandLine)
{
    WriteFile("notes.txt", "clear\n");
    WriteFile("host.ini", "[Log]\nlevel=1\n[Text]\nfile=notes.txt\n");

    m_host.Run({});
    EXPECT_THAT(ReadLogLines(), IsEmpty());

    m_host.Run({"-level", "2"});
    EXPECT_THAT(ReadLogLines(), testing::Not(IsEmpty()));
}

TEST_F(HostTest, LogsOnlyErrorsAtLevel0)
{
    WriteFile("host.ini", "[Text]\nfile=none.txt\n");

    m_host.Run({"-level", "0"});

    EXPECT_THAT(
        ReadLogLines(),
        ElementsAre(MatchesRegex("0 [0-9]+ : [0-9]+ : Fail : Cannot read the text to search: .*")));
}

TEST_F(HostTest, RejectsAnInvalidLogLevel)
{
    InstallSmallText();

    for (const char* const level : {"5", "10", "x", "1x", ""}) {
        SCOPED_TRACE(level);
        const ProgramResult result = m_host.Run({"-level", level});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.errors, "host: The log level must be a number from 0 to 4, not \"" +
                                     std::string(level) + "\"\n");
    }
}

TEST_F(HostTest, ShowsTheUsageForAnInvalidCommandLine)
{
    InstallSmallText();
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"-colour", "red"}, "unknown option -colour"},
        {{"--quiet"}, "unknown option --quiet"},
        {{"-Find", "fog"}, "unknown option -Find"},
        {{"-5"}, "unknown option -5"},
        {{"-find"}, "the option -find needs a value"},
        {{"-find", "-quiet"}, "the option -find needs a value"},
        {{"-quiet", "stray"}, "\"stray\" is neither an option nor the value of one"},
        {{""}, "\"\" is neither an option nor the value of one"}};

    for (const auto& [arguments, error] : cases) {
        SCOPED_TRACE(error);
        const ProgramResult result = m_host.Run(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors,
                    testing::StartsWith("host: " + std::string(error) + "\nusage: host "));
    }
}

TEST_F(HostTest, ShowsTheUsageForHelp)
{
    for (const char* const option : {"-h", "-help", "--help"}) {
        const ProgramResult result = m_host.Run({option});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_THAT(result.output, testing::StartsWith("usage: host "));
        EXPECT_EQ(result.errors, "");
    }
}

TEST_F(HostTest, ShowsTheLogThatItActuallyOpened)
{
    InstallSmallText();
    std::filesystem::create_directory(m_host.LogPath());

    const ProgramResult result = m_host.Run({});

    const std::string label = "\nLog                     ";
    const std::string rest = result.output.substr(result.output.find(label) + label.size());
    const std::filesystem::path path = rest.substr(0, rest.find('\n'));
    EXPECT_THAT(path.native(), MatchesRegex("/tmp/" + m_host.UniqueName() + "-[0-9]+\\.qvlog"));
    EXPECT_THAT(ReadWholeFile(path), HasSubstr("Settings read"));
    std::filesystem::remove(path);
}

TEST_F(HostTest, EscapesCharactersThatATerminalInterprets)
{
    const ProgramResult result =
        m_host.Run({"-config", "a\x1B[31m\tb\xC2\x9B\xE2\x80\xAE\xC3\xB6"});

    EXPECT_THAT(result.errors, HasSubstr("the settings: a\\x1B[31m\\x09b\\x9B\\x202E\xC3\xB6\n"));
}

TEST_F(HostTest, FailsWithoutSettings)
{
    const ProgramResult result = m_host.Run({});

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "host: Cannot read the settings: " +
                                 (m_host.ConfigurationPath() / "host.ini").native() + "\n");
}

TEST_F(HostTest, FailsWithoutTheTextToSearch)
{
    WriteFile("host.ini", "[Text]\nfile=none.txt\n");

    const ProgramResult result = m_host.Run({});

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "host: Cannot read the text to search: " +
                                 (m_host.ConfigurationPath() / "none.txt").native() + "\n");
}

TEST_F(HostTest, FailsWhenTheSettingsDoNotNameATextFile)
{
    const std::string settings = WriteFile("host.ini", "[Text]\n");

    const ProgramResult result = m_host.Run({});

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors,
              "host: No text to search: [Text] file is missing in " + settings + "\n");
}

TEST_F(HostTest, ShowsNonAsciiNamesInTheCLocale)
{
    const ScopedEnvironment locale("LC_ALL", "C");
    const std::string settings = WriteFile("söder.ini", "[Text]\nfile=nöte.txt\nfind=å\n");
    WriteFile("nöte.txt", "å\n");

    const ProgramResult result = m_host.Run({"-config", settings});

    EXPECT_THAT(result.output, AllOf(HasSubstr("Settings                " + settings + "\n"),
                                     HasSubstr("1 of 1 lines contain \"å\".\n")));
}

} // namespace
} // namespace Toolkit::TestSupport
