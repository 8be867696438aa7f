#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "InstalledProgram.h"

namespace Toolkit::TestSupport {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Tests a host that loads plug-ins, shows their commands and ends.
class HostPlugInsTest : public testing::Test {
protected:
    HostPlugInsTest()
    {
        std::ofstream(m_host.ConfigurationPath() / "host.ini") << "[Text]\nfile=notes.txt\n";
        std::ofstream(m_host.ConfigurationPath() / "notes.txt") << "clear\n";
    }

    const InstalledProgram m_host{HOST_PROGRAM};
};

TEST_F(HostPlugInsTest, ShowsTheCommandsOfAllPlugIns)
{
    for (const char* const library : {ARCHIVE_PLUG_IN, ENCODE_PLUG_IN, FIND_PLUG_IN})
        m_host.InstallPlugIn(library);

    const ProgramResult result = m_host.Run({});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(
        result.output,
        HasSubstr(
            "Command list            sizes and names of the entries of a Zip archive\n"
            "Command search          lines of a Zip archive's entries that match a regular "
            "expression\n"
            "Command encode          a file encoded in Base64, or a text file in quoted-printable\n"
            "Command decode          the original of an encoded file\n"
            "Command find            lines of a folder's files that match a regular expression\n"));
}

TEST_F(HostPlugInsTest, ShowsACommandWithALongName)
{
    m_host.InstallPlugIn(ODD_COMMANDS_PLUG_IN);

    EXPECT_THAT(m_host.Run({}).output,
                HasSubstr("\nCommand fail-without-a-reason fails without a reason\n"));
}

TEST_F(HostPlugInsTest, StartsPlugInsByNameAndStopsThemInReverse)
{
    for (const char* const library : {FIND_PLUG_IN, ENCODE_PLUG_IN, ARCHIVE_PLUG_IN})
        m_host.InstallPlugIn(library);

    m_host.Run({});

    EXPECT_THAT(m_host.Log(), testing::ContainsRegex("plug-in archive starts(.|\n)*"
                                                     "plug-in encode starts(.|\n)*"
                                                     "plug-in find starts(.|\n)*"
                                                     "plug-in find stops(.|\n)*"
                                                     "plug-in encode stops(.|\n)*"
                                                     "plug-in archive stops(.|\n)*"
                                                     "Stopping after [0-9]+ ms\n$"));
}

TEST_F(HostPlugInsTest, OmitsUnusablePlugInsAndReportsWhy)
{
    const std::pair<const char*, const char*> cases[] = {
        {NO_FUNCTION_PLUG_IN, "it has no function GetHostPlugIn"},
        {OTHER_VERSION_PLUG_IN, "it uses version 2 of the interface, but the host uses version 1"},
        {SECOND_LIST_PLUG_IN, "another plug-in already provides the command \"list\""},
        {THROWING_MODULE_PLUG_IN, "its module failed to start: no sounding gear"},
        {USELESS_PLUG_IN, "it reports that it is unusable"}};
    m_host.InstallPlugIn(ARCHIVE_PLUG_IN);
    for (const auto& [library, error] : cases)
        m_host.InstallPlugIn(library);

    const ProgramResult result = m_host.Run({});

    EXPECT_EQ(result.exitCode, 0);
    for (const auto& [library, error] : cases) {
        const std::string path = m_host.PlugInsPath() / std::filesystem::path(library).filename();
        const std::string message = "Skipped the plug-in " + path + ": " + error + "\n";
        EXPECT_THAT(result.errors, HasSubstr("host: " + message));
        EXPECT_THAT(m_host.Log(), HasSubstr(" : " + message));
    }
    EXPECT_THAT(result.output, HasSubstr("Command list            sizes and names"));
}

// The host tries the unusable file before a usable one.
TEST_F(HostPlugInsTest, OmitsAFileThatIsNotALibrary)
{
    m_host.InstallPlugIn(FIND_PLUG_IN);
    const std::string path = m_host.PlugInsPath() / "a-text.so";
    std::ofstream(path) << "This is not a library.\n";

    const ProgramResult result = m_host.Run({});

    EXPECT_EQ(result.errors, "host: Skipped the plug-in " + path +
                                 ": it cannot be loaded: " + path + ": file too short\n");
    EXPECT_THAT(result.output, HasSubstr("Command find "));
}

TEST_F(HostPlugInsTest, OmitsALibraryAndNamesItsUndefinedSymbol)
{
    const std::string path = m_host.PlugInsPath() / "unresolved.so";
    m_host.InstallPlugIn(UNRESOLVED_PLUG_IN);

    const ProgramResult result = m_host.Run({});

    EXPECT_EQ(result.errors, "host: Skipped the plug-in " + path + ": it cannot be loaded: " +
                                 path + ": undefined symbol: GetTideTable\n");
    EXPECT_THAT(m_host.Log(), HasSubstr("undefined symbol: GetTideTable\n"));
}

TEST_F(HostPlugInsTest, IgnoresOtherFilesAndFolders)
{
    m_host.InstallPlugIn(FIND_PLUG_IN);
    std::ofstream(m_host.PlugInsPath() / "readme.txt") << "This is not a library.\n";
    std::filesystem::create_directory(m_host.PlugInsPath() / "folder.so");

    const ProgramResult result = m_host.Run({});

    EXPECT_EQ(result.errors, "");
}

TEST_F(HostPlugInsTest, ReadsTheFolderFromAnOptionOrTheSettings)
{
    const TempDir elsewhere;
    std::filesystem::copy_file(FIND_PLUG_IN, elsewhere.Path() / "find.so");
    const std::string settings = m_host.ConfigurationPath() / "other.ini";
    std::ofstream(settings) << "[Text]\nfile=notes.txt\n[PlugIns]\nfolder="
                            << elsewhere.Path().native() << "\n";

    EXPECT_THAT(m_host.Run({}).output, Not(HasSubstr("Command")));
    EXPECT_THAT(m_host.Run({"-plugins", elsewhere.Path()}).output, HasSubstr("Command find "));
    EXPECT_THAT(m_host.Run({"-config", settings}).output, HasSubstr("Command find "));
}

TEST_F(HostPlugInsTest, RunsWithoutPlugInsWhenTheFolderIsMissing)
{
    const ProgramResult result = m_host.Run({"-quiet", "-plugins", "/none"});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors, IsEmpty());
}

} // namespace
} // namespace Toolkit::TestSupport
