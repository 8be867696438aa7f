#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <pwd.h>
#include <string>
#include <unistd.h>
#include <utility>

#include "ToolFixture.h"

namespace Toolkit::TestSupport {
namespace {

using testing::HasSubstr;

// Changes the permissions of a directory. The destructor restores them, so that TempDir can remove
// the directory even if the test does not run as root.
class ScopedPermissions {
public:
    ScopedPermissions(std::filesystem::path directory, std::filesystem::perms permissions)
        : m_directory(std::move(directory)),
          m_oldPermissions(std::filesystem::status(m_directory).permissions())
    {
        std::filesystem::permissions(m_directory, permissions);
    }
    ~ScopedPermissions() { std::filesystem::permissions(m_directory, m_oldPermissions); }

    ScopedPermissions(const ScopedPermissions&) = delete;
    ScopedPermissions& operator=(const ScopedPermissions&) = delete;

private:
    const std::filesystem::path m_directory;
    const std::filesystem::perms m_oldPermissions;
};

// Returns a line of the output: a label in a column of 16 characters, and a value.
std::string FormatRow(std::string label, const std::string& value)
{
    label.resize(16, ' ');
    return label + value + "\n";
}

// Fixture with an empty home directory and an installed program, bin/app, that this user may run.
class PathsCommandTest : public ToolFixture {
protected:
    PathsCommandTest()
    {
        std::filesystem::create_directories(PathOf("bin"));
        std::filesystem::create_directories(PathOf("home"));
        Write(L"bin/app", "#!/bin/sh\n");
        std::filesystem::permissions(PathOf("bin/app"), std::filesystem::perms::owner_all);
    }

    ProgramResult RunPaths() const { return Run({"paths", PathOf("bin/app")}); }

    // Drops the capabilities of root, because permissions do not restrict a process that has them.
    ProgramResult RunPathsWithoutPrivileges() const
    {
        if (::geteuid() != 0)
            return RunPaths();
        return RunProgram("/usr/bin/setpriv", {"--bounding-set=-all", "--inh-caps=-all",
                                               TOOLKIT_COMMAND, "paths", PathOf("bin/app")});
    }

    std::string UniqueName() const
    {
        std::string name = PathOf("bin") + "app" + ::getpwuid(::getuid())->pw_name;
        name.erase(std::remove(name.begin(), name.end(), '/'), name.end());
        std::transform(name.begin(), name.end(), name.begin(), [](unsigned char character) {
            return static_cast<char>(std::tolower(character));
        });
        return name;
    }

    const ScopedEnvironment m_home{"HOME", PathOf("home")};
};

TEST_F(PathsCommandTest, PrintsThePathsOfAProgram)
{
    std::filesystem::create_directories(PathOf("share/app/config"));
    const std::string unique = UniqueName();
    const std::pair<const char*, std::string> rows[] = {
        {"name", "app"},
        {"unique name", unique},
        {"application", PathOf("bin") + " (good)"},
        {"shared data", PathOf("share/app") + " (good)"},
        {"configuration", PathOf("share/app/config") + " (good)"},
        {"ressources", PathOf("share/app/ressources") + " (missing)"},
        {"plug-ins", PathOf("share/app/ressources/plugins") + " (missing)"},
        {"user data", PathOf("home/.app") + " (missing)"},
        {"data", PathOf("home/.app/app") + " (missing)"},
        {"documents", PathOf("home") + " (good)"},
        {"temporary", "/tmp (good)"},
        {"lock", PathOf("home/." + unique + ".lock") + " (missing)"},
        {"wxWidgets lock", PathOf("home/" + unique) + " (missing)"},
        {"socket", "/tmp/" + unique + ".ipc (missing)"},
        {"log", "/tmp/app.qvlog (missing)"},
        {"unique log", "/tmp/" + unique + ".qvlog (missing)"}};
    std::string expected;
    for (const auto& [label, value] : rows)
        expected += FormatRow(label, value);

    const ProgramResult result = RunPaths();

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, expected);
}

TEST_F(PathsCommandTest, CreatesNothingInTheHomeDirectory)
{
    RunPaths();

    EXPECT_TRUE(std::filesystem::is_empty(PathOf("home")));
}

TEST_F(PathsCommandTest, FindsAProgramInPath)
{
    const ScopedEnvironment path("PATH", "/nonexistent:" + PathOf("bin"));

    EXPECT_EQ(Run({"paths", "app"}).output, RunPaths().output);
    EXPECT_EQ(Run({"paths", "other"}).errors, "toolkit: no program \"other\" in PATH\n");
    EXPECT_EQ(Run({"paths", "/nonexistent"}).exitCode, 2);
}

TEST_F(PathsCommandTest, SearchesTheWorkingDirectoryIfPathHasAnEmptyEntry)
{
    EXPECT_EQ(RunInShell("cd $dir/bin && PATH=: $toolkit paths app").output, RunPaths().output);
}

TEST_F(PathsCommandTest, ReportsUnusablePaths)
{
    Write(L"home/.app", "a file");
    std::filesystem::create_directories(PathOf("share/app"));
    Write(L"share/app/config", "a file");
    std::filesystem::create_symlink("/etc/passwd", PathOf("home/." + UniqueName() + ".lock"));

    const ProgramResult result = RunPaths();

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("share/app/config (not a directory)\n"));
    EXPECT_THAT(result.output, HasSubstr(".lock (a link)\n"));
    EXPECT_THAT(result.output, HasSubstr("home/.app (not a directory)\n"));
    EXPECT_THAT(result.output, HasSubstr("home/.app/app (missing, and cannot be created)\n"));
}

TEST_F(PathsCommandTest, ReportsPathsOfAnotherUser)
{
    constexpr uid_t nobody = 65534;

    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give files away";
    const std::string lock = PathOf("home/" + UniqueName());
    Write(L"lock", "");
    std::filesystem::rename(PathOf("lock"), lock);
    ASSERT_EQ(::chown(lock.c_str(), nobody, nobody), 0);
    ASSERT_EQ(::chown(PathOf("home").c_str(), nobody, nobody), 0);

    const ProgramResult result = RunPaths();

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output,
                HasSubstr(FormatRow("wxWidgets lock", lock + " (owned by another user)")));
    EXPECT_THAT(result.output,
                HasSubstr(FormatRow("documents", PathOf("home") + " (owned by another user)")));
}

// A file can be created in a directory only if the directory is searchable too.
TEST_F(PathsCommandTest, ReportsADirectoryThatIsNotSearchableAsNotWritable)
{
    using std::filesystem::perms;
    const ScopedPermissions home(PathOf("home"), perms::owner_read | perms::owner_write);

    EXPECT_THAT(RunPathsWithoutPrivileges().output,
                HasSubstr(FormatRow("documents", PathOf("home") + " (not writable)")));
}

TEST_F(PathsCommandTest, ReportsUnwritablePaths)
{
    using std::filesystem::perms;
    const ScopedPermissions home(PathOf("home"), perms::owner_read | perms::owner_exec);

    const ProgramResult result = RunPathsWithoutPrivileges();

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output,
                HasSubstr(FormatRow("documents", PathOf("home") + " (not writable)")));
    EXPECT_THAT(result.output,
                HasSubstr(FormatRow("data", PathOf("home/.app/app") +
                                                " (missing, and cannot be created)")));
    EXPECT_THAT(result.output,
                HasSubstr(FormatRow("wxWidgets lock", PathOf("home/" + UniqueName()) +
                                                          " (missing, and cannot be created)")));
}

TEST_F(PathsCommandTest, ReportsUnreadablePaths)
{
    std::filesystem::create_directories(PathOf("share/app/config"));
    const ScopedPermissions configuration(PathOf("share/app/config"), std::filesystem::perms::none);

    const ProgramResult result = RunPathsWithoutPrivileges();

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr(FormatRow("configuration", PathOf("share/app/config") +
                                                                        " (not readable)")));
}

TEST_F(PathsCommandTest, RejectsADirectory)
{
    const ProgramResult result = Run({"paths", "/usr/bin"});

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "toolkit: /usr/bin is a directory, not a program\n");
}

TEST_F(PathsCommandTest, IgnoresADirectoryNamedLikeTheProgram)
{
    const ScopedEnvironment path("PATH", "/usr");

    EXPECT_EQ(Run({"paths", "bin"}).errors, "toolkit: no program \"bin\" in PATH\n");
}

TEST_F(PathsCommandTest, PrintsItsOwnPathsWithoutAProgram)
{
    EXPECT_THAT(Run({"paths"}).output, HasSubstr("name            toolkit\n"));
}

} // namespace
} // namespace Toolkit::TestSupport
