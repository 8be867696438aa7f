#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <pwd.h>
#include <unistd.h>

#include "ToolFixture.h"

namespace Toolkit::TestSupport {
namespace {

using testing::HasSubstr;

// Makes a directory read-only until the object is destroyed.
class ReadOnlyDirectory {
public:
    explicit ReadOnlyDirectory(std::filesystem::path directory) : m_directory(std::move(directory))
    {
        std::filesystem::permissions(m_directory, c_write, std::filesystem::perm_options::remove);
    }

    // Otherwise a user other than root could not remove the directory's contents.
    ~ReadOnlyDirectory()
    {
        std::filesystem::permissions(m_directory, c_write, std::filesystem::perm_options::add);
    }

    ReadOnlyDirectory(const ReadOnlyDirectory&) = delete;
    ReadOnlyDirectory& operator=(const ReadOnlyDirectory&) = delete;

private:
    static constexpr auto c_write = std::filesystem::perms::owner_write;

    const std::filesystem::path m_directory;
};

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

    // Permissions do not restrict root, so the command runs without the privileges of root.
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

    const ProgramResult result = RunPaths();

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "name            app\n"
                             "unique name     " +
                                 UniqueName() +
                                 "\n"
                                 "application     " +
                                 PathOf("bin") +
                                 " (good)\n"
                                 "shared data     " +
                                 PathOf("share/app") +
                                 " (good)\n"
                                 "configuration   " +
                                 PathOf("share/app/config") +
                                 " (good)\n"
                                 "ressources      " +
                                 PathOf("share/app/ressources") +
                                 " (missing)\n"
                                 "plug-ins        " +
                                 PathOf("share/app/ressources/plugins") +
                                 " (missing)\n"
                                 "user data       " +
                                 PathOf("home/.app") +
                                 " (missing)\n"
                                 "data            " +
                                 PathOf("home/.app/app") +
                                 " (missing)\n"
                                 "documents       " +
                                 PathOf("home") +
                                 " (good)\n"
                                 "temporary       /tmp (good)\n"
                                 "lock            " +
                                 PathOf("home/." + UniqueName() + ".lock") +
                                 " (missing)\n"
                                 "second lock     " +
                                 PathOf("home/" + UniqueName()) +
                                 " (missing)\n"
                                 "socket          /tmp/" +
                                 UniqueName() +
                                 ".ipc (missing)\n"
                                 "log             /tmp/app.qvlog (missing)\n"
                                 "own log         /tmp/" +
                                 UniqueName() + ".qvlog (missing)\n");
}

TEST_F(PathsCommandTest, CreatesNothing)
{
    RunPaths();

    EXPECT_TRUE(std::filesystem::is_empty(PathOf("home")));
}

TEST_F(PathsCommandTest, FindsAProgramInPath)
{
    const ScopedEnvironment path("PATH", "/nonesuch:" + PathOf("bin"));

    EXPECT_EQ(Run({"paths", "app"}).output, RunPaths().output);
    EXPECT_EQ(Run({"paths", "other"}).errors, "toolkit: there is no program other\n");
    EXPECT_EQ(Run({"paths", "/nonesuch"}).exitCode, 2);
}

TEST_F(PathsCommandTest, SearchesTheWorkingDirectoryForAnEmptyEntryInPath)
{
    EXPECT_EQ(Shell("cd $dir/bin && PATH=: $toolkit paths app").output, RunPaths().output);
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
    EXPECT_THAT(result.output, HasSubstr("second lock     " + lock + " (another user's)\n"));
    EXPECT_THAT(result.output,
                HasSubstr("documents       " + PathOf("home") + " (another user's)\n"));
}

TEST_F(PathsCommandTest, ReportsUnwritablePaths)
{
    const ReadOnlyDirectory home(PathOf("home"));

    const ProgramResult result = RunPathsWithoutPrivileges();

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output,
                HasSubstr("documents       " + PathOf("home") + " (not writable)\n"));
    EXPECT_THAT(result.output, HasSubstr("data            " + PathOf("home/.app/app") +
                                         " (missing, and cannot be created)\n"));
    EXPECT_THAT(result.output, HasSubstr("second lock     " + PathOf("home/" + UniqueName()) +
                                         " (missing, and cannot be created)\n"));
}

TEST_F(PathsCommandTest, ReportsUnreadablePaths)
{
    std::filesystem::create_directories(PathOf("share/app/config"));
    std::filesystem::permissions(PathOf("share/app/config"), std::filesystem::perms::none);

    const ProgramResult result = RunPathsWithoutPrivileges();

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output,
                HasSubstr("configuration   " + PathOf("share/app/config") + " (not readable)\n"));
}

TEST_F(PathsCommandTest, RejectsADirectory)
{
    const ProgramResult result = Run({"paths", "/usr/bin"});

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "toolkit: /usr/bin is a directory, not a program\n");
}

TEST_F(PathsCommandTest, IgnoresADirectoryInPath)
{
    const ScopedEnvironment path("PATH", "/usr");

    EXPECT_EQ(Run({"paths", "bin"}).errors, "toolkit: there is no program bin\n");
}

TEST_F(PathsCommandTest, PrintsItsOwnPathsWithoutAProgram)
{
    EXPECT_THAT(Run({"paths"}).output, HasSubstr("name            toolkit\n"));
}

} // namespace
} // namespace Toolkit::TestSupport
