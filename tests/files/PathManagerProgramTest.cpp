// The results of the path manager depend on the running program. These tests start PathProgram
// under many names, in many environments, with and without wxWidgets.

#include "support/RunProgram.h"
#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <pwd.h>
#include <sstream>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using TestSupport::ProgramResult;
using TestSupport::RunProgram;
using TestSupport::ScopedEnvironment;
using TestSupport::TempDir;
using Arguments = std::vector<std::string>;
using Paths = std::map<std::string, std::string>;

// The ways to start the program. No result may depend on them.
const Arguments c_starts[] = {{}, {"locale"}, {"wxWidgets"}, {"wxWidgets", "locale"}};

const passwd& GetAccount()
{
    return *::getpwuid(::getuid());
}

// Returns `text` in lower case, without separators or colons.
std::string ToUniqueForm(std::string text)
{
    std::erase(text, '/');
    std::erase(text, ':');
    for (char& character : text) {
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character + 'a' - 'A');
    }
    return text;
}

class PathManagerProgramTest : public testing::Test {
protected:
    PathManagerProgramTest()
    {
        std::filesystem::create_directories(m_directory.Path() / "bin");
        std::filesystem::create_directories(m_directory.Path() / "home");
    }

    std::string Path(const std::string& name) const { return m_directory.Path() / name; }

    // Copies the program to `name` in the directory and runs the copy. Returns the paths that it
    // prints, by their labels.
    Paths Run(const std::string& name, const Arguments& arguments) const
    {
        std::filesystem::copy_file(PATH_PROGRAM, Path(name),
                                   std::filesystem::copy_options::overwrite_existing);
        const ProgramResult result = RunProgram(Path(name), arguments);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "");
        Paths paths;
        std::istringstream lines(result.output);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t colon = line.find(": ");
            paths[line.substr(0, colon)] = line.substr(colon + 2);
        }
        return paths;
    }

    TempDir m_directory;
    ScopedEnvironment m_home{"HOME", Path("home")};
    ScopedEnvironment m_locale{"LC_ALL", "C"};
    ScopedEnvironment m_configuration{"XDG_CONFIG_HOME", std::nullopt};
};

TEST_F(PathManagerProgramTest, ReturnsThePathsOfTheInstalledProgram)
{
    for (const Arguments& arguments : c_starts) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const Paths expected = {
            {"name", "tool"},
            {"application", Path("bin")},
            {"configuration", Path("share/tool/config")},
            {"data", Path("home/.tool/tool")},
            {"ressources", Path("share/tool/ressources")},
            {"appearances", Path("share/tool/ressources")},
            {"plugins", Path("share/tool/ressources/plugins")},
            {"documents", Path("home")},
            {"data directory", Path("share/tool")},
            {"user's directory", Path("home/.tool")},
            {"unique", ToUniqueForm(Path("bin")) + "tool" + GetAccount().pw_name}};
        EXPECT_EQ(Run("bin/tool", arguments), expected);
        EXPECT_TRUE(std::filesystem::is_directory(Path("home/.tool/tool")));
        std::filesystem::remove_all(Path("home/.tool"));
    }
}

TEST_F(PathManagerProgramTest, ReturnsThePathsOfAnotherProgram)
{
    Paths expected = Run("bin/tool.bin", {});
    expected["data directory"] = Path("share/other");
    expected["user's directory"] = Path("home/.other");
    std::filesystem::remove_all(Path("home/.tool"));

    EXPECT_EQ(Run("bin/other", {Path("bin/tool.bin")}), expected);

    EXPECT_FALSE(std::filesystem::exists(Path("home/.tool")));
}

TEST_F(PathManagerProgramTest, ReturnsThePathsOfAnotherProgramWhoseFileIsHidden)
{
    Paths expected = Run("bin/.tool", {});
    expected["data directory"] = Path("share/other");
    expected["user's directory"] = Path("home/.other");

    EXPECT_EQ(expected["ressources"], Path("share/.tool/ressources"));
    EXPECT_EQ(Run("bin/other", {Path("bin/.tool")}), expected);
}

TEST_F(PathManagerProgramTest, NamesTheApplicationAfterItsFileWithoutTheLastExtension)
{
    const std::pair<const char*, const char*> cases[] = {
        {"tool", "tool"},           {"tool.bin", "tool"},
        {"a.b.c", "a.b"},           {".hidden", ""},
        {"tool.", "tool"},          {"na\xC3\xAFve", "na\xC3\xAFve"},
        {"My Tool.app", "My Tool"}, {"\xE6\x96\x87.\xE5\xAD\x97", "\xE6\x96\x87"}};
    for (const char* const locale : {"C", "C.UTF-8"}) {
        const ScopedEnvironment environment("LC_ALL", locale);
        for (const auto& [file, name] : cases) {
            SCOPED_TRACE(std::string(locale) + " " + file);
            EXPECT_EQ(Run(std::string("bin/") + file, {})["name"], name);
            EXPECT_EQ(Run(std::string("bin/") + file, {"wxWidgets", "locale"})["name"], name);
        }
    }
}

// An executable whose file name is not valid UTF-8 counts as unknown.
TEST_F(PathManagerProgramTest, ReturnsAnEmptyNameAndTheWorkingDirectoryForAnUnknownExecutable)
{
    const std::string directory = std::filesystem::current_path();
    for (const Arguments& arguments : c_starts) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        Paths paths = Run("bin/\xFF", arguments);
        EXPECT_EQ(paths["name"], "");
        EXPECT_EQ(paths["application"], directory);
        EXPECT_EQ(paths["data"], paths["user's directory"] + "/");
        EXPECT_EQ(paths["unique"], ToUniqueForm(directory) + GetAccount().pw_name);
    }
}

TEST_F(PathManagerProgramTest, ReturnsAUniqueNameInLowerCaseWithoutSeparatorsOrColons)
{
    std::filesystem::create_directories(Path("Apps/My Tool: New/bin"));
    for (const Arguments& arguments : c_starts) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        Paths paths = Run("Apps/My Tool: New/bin/Tool.app", arguments);
        EXPECT_EQ(paths["unique"], ToUniqueForm(m_directory.Path()) + "appsmy tool newbintool" +
                                       GetAccount().pw_name);
    }
}

TEST_F(PathManagerProgramTest, UsesThePrefixUsrLocalOutsideABinDirectory)
{
    for (const Arguments& arguments : c_starts)
        EXPECT_EQ(Run("tool", arguments)["data directory"], "/usr/local/share/tool");
}

TEST_F(PathManagerProgramTest, FindsThePrefixAboveTheLastBinDirectory)
{
    std::filesystem::create_directories(Path("bin/opt/bin"));
    for (const Arguments& arguments : c_starts)
        EXPECT_EQ(Run("bin/opt/bin/tool", arguments)["data directory"], Path("bin/opt/share/tool"));
}

TEST_F(PathManagerProgramTest, AcceptsNonAsciiCharactersInHome)
{
    for (const char* const locale : {"C", "C.UTF-8"}) {
        const ScopedEnvironment environment("LC_ALL", locale);
        const ScopedEnvironment home("HOME", Path("\xC3\xA9 \xE6\x96\x87"));
        for (const Arguments& arguments : c_starts) {
            SCOPED_TRACE(locale + testing::PrintToString(arguments));
            Paths paths = Run("bin/tool", arguments);
            EXPECT_EQ(paths["data"], Path("\xC3\xA9 \xE6\x96\x87/.tool/tool"));
            EXPECT_EQ(paths["documents"], Path("\xC3\xA9 \xE6\x96\x87"));
            EXPECT_TRUE(std::filesystem::is_directory(paths["data"]));
            std::filesystem::remove_all(Path("\xC3\xA9 \xE6\x96\x87"));
        }
    }
}

// Of these paths, only the user's directory and the data path depend on HOME.
TEST_F(PathManagerProgramTest, UsesTheApplicationNameOfWxWidgets)
{
    for (const char* const locale : {"C", "C.UTF-8"}) {
        for (const char* const home : {"home", "\xC3\xA9"}) {
            SCOPED_TRACE(std::string(locale) + " " + home);
            const ScopedEnvironment localeVariable("LC_ALL", locale);
            const ScopedEnvironment homeVariable("HOME", Path(home));
            Paths paths = Run("bin/tool", {"wxWidgets", "locale", "Viewer"});
            EXPECT_EQ(paths["configuration"], Path("share/Viewer/config"));
            EXPECT_EQ(paths["ressources"], Path("share/Viewer/ressources"));
            EXPECT_EQ(paths["user's directory"], Path(home) + "/.Viewer");
            EXPECT_EQ(paths["data"], Path(home) + "/.Viewer/tool");
        }
    }
}

TEST_F(PathManagerProgramTest, DoesNotDoubleASeparatorForAnUnknownExecutable)
{
    for (const Arguments& arguments : c_starts) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_EQ(Run("bin/\xFF", arguments)["configuration"].find("//"), std::string::npos);
    }
}

TEST_F(PathManagerProgramTest, ReadsTheDataDirectoryFromTheEnvironment)
{
    const ScopedEnvironment environment("WX_TOOL_DATA_DIR", "/opt/data");
    for (const char* const directory : {"bin", "\xC3\xA9"}) {
        std::filesystem::create_directories(Path(directory));
        for (const Arguments& arguments : c_starts)
            EXPECT_EQ(Run(directory + std::string("/tool"), arguments)["data directory"],
                      "/opt/data");
    }
}

// Creates `directory` in the user's real home directory and removes it.
TEST_F(PathManagerProgramTest, UsesTheUserDatabaseIfHomeIsMissingOrEmpty)
{
    const std::string directory = std::string(GetAccount().pw_dir) + "/.toolkit-path-program";
    const std::optional<std::string> values[] = {std::nullopt, ""};
    for (const auto& value : values) {
        const ScopedEnvironment environment("HOME", value);
        for (const Arguments& arguments : c_starts) {
            SCOPED_TRACE(testing::PrintToString(arguments));
            EXPECT_EQ(Run("bin/toolkit-path-program", arguments)["user's directory"], directory);
        }
    }
    std::filesystem::remove_all(directory);
}

TEST_F(PathManagerProgramTest, KeepsTheDataPathWhenHomeIsNotWritable)
{
    const ScopedEnvironment environment("HOME", "/proc/none");
    for (const Arguments& arguments : c_starts) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_EQ(Run("bin/tool", arguments)["data"], "/proc/none/.tool/tool");
    }
}

TEST_F(PathManagerProgramTest, ReturnsTheDocumentsDirectoryThatTheUserChose)
{
    std::filesystem::create_directories(Path("home/.config"));
    std::filesystem::create_directories(Path("home/Meine Texte"));
    m_directory.WriteFile(L"home/.config/user-dirs.dirs",
                          "# a comment\nXDG_DESKTOP_DIR=\"$HOME/Desktop\"\n"
                          "XDG_DOCUMENTS_DIR=\"$HOME/Meine Texte\"\n");
    for (const Arguments& arguments : c_starts) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_EQ(Run("bin/tool", arguments)["documents"], Path("home/Meine Texte"));
    }
}

TEST_F(PathManagerProgramTest, ParsesUserDirsForTheDocumentsDirectory)
{
    const std::pair<const char*, const char*> cases[] = {
        {"  XDG_DOCUMENTS_DIR=  \"$HOME/Texts\"  \n", "home/Texts"},
        {"XDG_DOCUMENTS_DIR=$HOME/Texts", "home/Texts"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/none\"\nXDG_DOCUMENTS_DIR=\"$HOME/Texts\"\n", "home"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/Texts\"\nXDG_DOCUMENTS_DIR=\"$HOME/Other\"\n", "home/Texts"},
        {"#XDG_DOCUMENTS_DIR=\"$HOME/Texts\"\n", "home/Texts"},
        {"XDG_DOCUMENTS_DIR\nXDG_DOCUMENTS_DIR=\"$HOME/Texts\"\n", "home"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/\xC3\xA9\"\n", "home/\xC3\xA9"},
        {"", "home"}};
    for (const char* const name : {"home/.config", "home/Texts", "home/Other", "home/\xC3\xA9"})
        std::filesystem::create_directories(Path(name));
    for (const auto& [lines, expected] : cases) {
        m_directory.WriteFile(L"home/.config/user-dirs.dirs", lines);
        for (const char* const locale : {"C", "C.UTF-8"}) {
            const ScopedEnvironment environment("LC_ALL", locale);
            for (const Arguments& arguments : c_starts) {
                SCOPED_TRACE(lines + testing::PrintToString(arguments));
                EXPECT_EQ(Run("bin/tool", arguments)["documents"], Path(expected));
            }
        }
    }
}

TEST_F(PathManagerProgramTest, IgnoresADocumentsDirectoryThatDoesNotExist)
{
    std::filesystem::create_directories(Path("other"));
    m_directory.WriteFile(L"other/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"/none/at all\"");
    const ScopedEnvironment environment("XDG_CONFIG_HOME", Path("other"));
    for (const Arguments& arguments : c_starts) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_EQ(Run("bin/tool", arguments)["documents"], Path("home"));
    }
}

} // namespace
} // namespace Toolkit
