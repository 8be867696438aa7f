#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "ToolFixture.h"

namespace Toolkit::TestSupport {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

const std::string c_completions = TOOLKIT_SOURCE_DIR "/tools/completions/";

bool HasProgram(const std::string& name)
{
    return ::access(("/usr/bin/" + name).c_str(), X_OK) == 0;
}

// Returns the lines of `text`, each up to its first tab, after which fish prints a description.
std::vector<std::string> LinesOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line.substr(0, line.find('\t')));
    return lines;
}

class CompletionTest : public ToolFixture {
protected:
    // Returns what bash offers for the last of `words` in the test's directory.
    std::vector<std::string> CompleteInBash(const std::string& words) const
    {
        const std::string script = "source " + c_completions + "toolkit.bash\ncd '" +
                                   m_directory.Path().native() + "'\nCOMP_WORDS=(" + words +
                                   ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_toolkit\n"
                                   "printf '%s\\n' \"${COMPREPLY[@]}\"\n";
        const ProgramResult result = RunProgram("/bin/bash", {"-c", script});
        EXPECT_EQ(result.errors, "");
        return LinesOf(result.output);
    }

    // Returns what fish offers for the last word of `line`.
    std::vector<std::string> CompleteInFish(const std::string& line) const
    {
        const std::string script = "source " + c_completions + "toolkit.fish; cd '" +
                                   m_directory.Path().native() + "'; complete -C '" + line + "'";
        const ProgramResult result = RunProgram("/usr/bin/fish", {"-N", "-c", script});
        EXPECT_EQ(result.errors, "");
        return LinesOf(result.output);
    }

    // Returns what the zsh completion function passes to zsh's own functions.
    static std::string CompleteInZsh(const std::string& words)
    {
        const std::string script = "compadd() { print -l -- $@ }; _arguments() { print -l -- $@ }\n"
                                   "words=(" +
                                   words + "); CURRENT=${#words}\nsource " + c_completions +
                                   "_toolkit";
        const ProgramResult result = RunProgram("/usr/bin/zsh", {"-f", "-c", script});
        EXPECT_EQ(result.errors, "");
        return result.output;
    }

    // Returns the log names that the zsh completion function passes on.
    std::string FindLogsInZsh() const
    {
        const std::string script =
            "compadd() { print -l -- ${(P)2} }; _files() { }; _arguments() { }\ncd '" +
            m_directory.Path().native() + "'\nwords=(toolkit log ''); CURRENT=3\nsource " +
            c_completions + "_toolkit\n_toolkit_logs";
        const ProgramResult result = RunProgram("/usr/bin/zsh", {"-f", "-c", script});
        EXPECT_EQ(result.errors, "");
        return result.output;
    }
};

TEST_F(CompletionTest, OffersSubcommandsAndOptionsInBash)
{
    EXPECT_THAT(CompleteInBash("toolkit ''"),
                testing::ElementsAre("log", "ini", "zip", "ipc", "paths", "about"));
    EXPECT_THAT(CompleteInBash("toolkit z"), testing::ElementsAre("zip"));
    EXPECT_THAT(CompleteInBash("toolkit zip e"), testing::ElementsAre("extract"));
    EXPECT_THAT(CompleteInBash("toolkit zip extract --l"), testing::ElementsAre("--limit"));
    EXPECT_THAT(CompleteInBash("toolkit log --severity w"), testing::ElementsAre("warning"));
}

TEST_F(CompletionTest, OffersSubcommandsAndOptionsInFish)
{
    if (!HasProgram("fish"))
        GTEST_SKIP() << "fish is not installed";

    EXPECT_THAT(CompleteInFish("toolkit z"), Contains("zip"));
    EXPECT_THAT(CompleteInFish("toolkit zip e"), Contains("extract"));
    EXPECT_THAT(CompleteInFish("toolkit zip extract --l"), Contains("--limit"));
    EXPECT_THAT(CompleteInFish("toolkit log --severity w"), Contains("warning"));
    EXPECT_THAT(CompleteInFish("toolkit log --l"), Not(Contains("--limit")));
}

TEST_F(CompletionTest, OffersSubcommandsAndOptionsInZsh)
{
    if (!HasProgram("zsh"))
        GTEST_SKIP() << "zsh is not installed";

    EXPECT_THAT(CompleteInZsh("toolkit ''"), HasSubstr("log\nini\nzip\nipc\npaths\nabout\n"));
    EXPECT_THAT(CompleteInZsh("toolkit zip ''"), HasSubstr("list\ncat\nsearch\nextract\n"));
    EXPECT_THAT(CompleteInZsh("toolkit zip extract ''"),
                AllOf(HasSubstr("--limit["), HasSubstr("--type[")));
    EXPECT_THAT(CompleteInZsh("toolkit log ''"), HasSubstr("--severity["));
}

// A file or link in /tmp, where any user may create one. The destructor removes it.
class NameInTmp {
public:
    explicit NameInTmp(const std::string& suffix)
        : m_name("toolkit-completion-" + std::to_string(::getpid()) + suffix)
    {
    }

    ~NameInTmp() { std::filesystem::remove(Path()); }

    NameInTmp(const NameInTmp&) = delete;
    NameInTmp& operator=(const NameInTmp&) = delete;

    const std::string& Name() const { return m_name; }

    std::filesystem::path Path() const { return "/tmp/" + m_name + ".qvlog"; }

    void Write() const { std::ofstream(Path()) << "1 2 : 3 : F : text\n"; }

private:
    std::string m_name;
};

TEST_F(CompletionTest, OffersLogNamesInBash)
{
    const NameInTmp log("plain");
    log.Write();

    EXPECT_THAT(CompleteInBash("toolkit log toolkit-comp"), Contains(log.Name()));
    EXPECT_THAT(CompleteInBash("toolkit log --json ''"), Contains(log.Name()));
}

TEST_F(CompletionTest, DoesNotRunCommandsFromLogNamesInBash)
{
    const NameInTmp log("$(touch ran)`touch ran`");
    log.Write();

    const std::string quoted =
        log.Name().substr(0, log.Name().find('$')) + "\\$\\(touch\\ ran\\)\\`touch\\ ran\\`";
    EXPECT_THAT(CompleteInBash("toolkit log ''"), Contains(quoted));
    EXPECT_FALSE(std::filesystem::exists(PathOf("ran")));
}

TEST_F(CompletionTest, EscapesSpacesOfLogNamesInBash)
{
    const NameInTmp log(" two words");
    log.Write();

    const std::string quoted = log.Name().substr(0, log.Name().find(' ')) + "\\ two\\ words";
    EXPECT_THAT(CompleteInBash("toolkit log toolkit-comp"), Contains(quoted));
    EXPECT_THAT(CompleteInBash("toolkit log '" + quoted.substr(0, quoted.size() - 2) + "'"),
                Contains(quoted));
}

// In /tmp, another user could have created the link.
TEST_F(CompletionTest, IgnoresALinkToAFileOfTheUser)
{
    const NameInTmp link("link");
    std::filesystem::create_symlink(Write(L"own.qvlog", "text"), link.Path());

    EXPECT_THAT(CompleteInBash("toolkit log ''"), Not(Contains(link.Name())));
    if (HasProgram("fish")) {
        EXPECT_THAT(CompleteInFish("toolkit log "), Not(Contains(link.Name())));
    }
    if (HasProgram("zsh")) {
        EXPECT_THAT(FindLogsInZsh(), Not(HasSubstr(link.Name())));
    }
}

TEST_F(CompletionTest, DoesNotRunCommandsFromLogNamesInOtherShells)
{
    const NameInTmp log("$(touch ran)(touch ran)");
    log.Write();

    if (HasProgram("fish")) {
        EXPECT_THAT(CompleteInFish("toolkit log "), Contains(log.Name()));
    }
    if (HasProgram("zsh")) {
        EXPECT_THAT(FindLogsInZsh(), HasSubstr(log.Name()));
    }
    EXPECT_FALSE(std::filesystem::exists(PathOf("ran")));
}

// Returns the long name of each option that `usage` lists.
std::vector<std::string> FindLongOptions(const std::string& usage)
{
    std::vector<std::string> options;
    for (const std::string& line : LinesOf(usage)) {
        const std::size_t begin = line.find("--");
        if (line.substr(0, 3) == "  -" && begin != std::string::npos)
            options.push_back(line.substr(begin, line.find_first_of(" ,", begin) - begin));
    }
    return options;
}

TEST_F(CompletionTest, ContainsEveryOption)
{
    const std::string bash = ReadWholeFile(c_completions + "toolkit.bash");
    const std::string zsh = ReadWholeFile(c_completions + "_toolkit");
    const std::string fish = ReadWholeFile(c_completions + "toolkit.fish");
    const std::vector<std::string> commands[] = {
        {"log"},         {"ini", "list"},   {"ini", "get"},     {"ini", "check"}, {"zip", "list"},
        {"zip", "cat"},  {"zip", "search"}, {"zip", "extract"}, {"ipc", "send"},  {"ipc", "listen"},
        {"ipc", "list"}, {"about"},         {"paths"}};
    for (std::vector<std::string> command : commands) {
        command.push_back("--help");
        const std::vector<std::string> options = FindLongOptions(Run(command).output);
        EXPECT_THAT(options, Contains("--help"));
        for (const std::string& option : options) {
            SCOPED_TRACE(testing::PrintToString(command) + " " + option);
            EXPECT_THAT(bash, HasSubstr(option));
            EXPECT_THAT(zsh, HasSubstr(option));
            EXPECT_THAT(fish, HasSubstr("-l " + option.substr(2) + " "));
        }
    }
}

} // namespace
} // namespace Toolkit::TestSupport
