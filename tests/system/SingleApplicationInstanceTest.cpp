#include "toolkit/system/SingleApplicationInstance.h"

#include "toolkit/files/PathManager.h"

#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <wx/defs.h>
#include <wx/snglinst.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <list>
#include <memory>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace Toolkit {
namespace {

using TestSupport::ScopedEnvironment;
using TestSupport::TempDir;

// Runs a copy of InstanceProgram, which starts the library on request.
class Copy {
public:
    Copy(const std::filesystem::path& program, const std::filesystem::path& errors)
    {
        int input[2];
        int output[2];
        EXPECT_EQ(::pipe2(input, O_CLOEXEC), 0);
        EXPECT_EQ(::pipe2(output, O_CLOEXEC), 0);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(),
                                           O_WRONLY | O_CREAT | O_APPEND, 0600);
        std::string path = program.native();
        char* arguments[] = {path.data(), nullptr};
        EXPECT_EQ(::posix_spawn(&m_process, path.c_str(), &actions, nullptr, arguments, environ),
                  0);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(input[0]);
        ::close(output[1]);
        m_input = input[1];
        m_output = output[0];
    }
    ~Copy() { Finish(); }

    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;

    void SendLine() const { EXPECT_EQ(::write(m_input, "go\n", 3), 3); }

    // Stops the copy's library while its process keeps running.
    void Stop() const
    {
        SendLine();
        EXPECT_EQ(ReadLine(), "stopped");
    }

    // Makes the copy fork a child. Returns the process id of the child, which runs by then.
    pid_t Fork() const
    {
        EXPECT_EQ(::write(m_input, "fork\n", 5), 5);
        return static_cast<pid_t>(std::stol(ReadLine()));
    }

    // Returns whether the copy has found another one. Also stores the unique name that the copy
    // prints, for UniqueName().
    bool SeesAnother()
    {
        const std::string line = ReadLine();
        EXPECT_THAT(line, testing::MatchesRegex("[01] .*"));
        m_uniqueName = line.substr(std::min<std::size_t>(line.size(), 2));
        return line.front() == '1';
    }

    const std::string& UniqueName() const { return m_uniqueName; }

    void Crash()
    {
        ::kill(m_process, SIGKILL);
        Finish();
    }

    void Finish()
    {
        if (m_process == 0)
            return;
        ::close(m_input);
        ::waitpid(m_process, nullptr, 0);
        ::close(m_output);
        m_process = 0;
    }

private:
    std::string ReadLine() const
    {
        std::string line;
        char character = 0;
        while (::read(m_output, &character, 1) == 1 && character != '\n')
            line.push_back(character);
        return line;
    }

    pid_t m_process = 0;
    int m_input = -1;
    int m_output = -1;
    std::string m_uniqueName;
};

class SingleApplicationInstanceTest : public testing::Test {
protected:
    Copy& Spawn(const std::filesystem::path& program = TOOLKIT_TEST_INSTANCE_PROGRAM)
    {
        return m_copies.emplace_back(program, m_directory.Path() / "errors");
    }

    Copy& Start(const std::filesystem::path& program = TOOLKIT_TEST_INSTANCE_PROGRAM)
    {
        Copy& copy = Spawn(program);
        copy.SendLine();
        return copy;
    }

    // Copies the program to `folder` and returns the path of the copy.
    std::filesystem::path Install(const std::filesystem::path& folder) const
    {
        std::filesystem::create_directories(folder);
        std::filesystem::copy_file(TOOLKIT_TEST_INSTANCE_PROGRAM, folder / "tool");
        return folder / "tool";
    }

    void ReplaceTheLockFileWithALink()
    {
        Copy& copy = Start();
        EXPECT_FALSE(copy.SeesAnother());
        copy.Finish();
        const std::filesystem::path lockFile = m_homePath / ("." + copy.UniqueName() + ".lock");
        EXPECT_TRUE(std::filesystem::remove(lockFile));
        std::filesystem::create_symlink(m_directory.Path() / "target", lockFile);
    }

    std::string ReadErrors() const { return m_directory.ReadFile(L"errors"); }

    static std::filesystem::path CreateDirectory(const std::filesystem::path& path)
    {
        std::filesystem::create_directory(path);
        return path;
    }

    const TempDir m_directory;
    const std::filesystem::path m_homePath = CreateDirectory(m_directory.Path() / "home");
    const ScopedEnvironment m_home{"HOME", m_homePath};
    std::list<Copy> m_copies;
};

TEST_F(SingleApplicationInstanceTest, ReturnsFalseInTheFirstCopy)
{
    EXPECT_FALSE(Start().SeesAnother());
}

TEST_F(SingleApplicationInstanceTest, ReturnsTrueInLaterCopies)
{
    EXPECT_FALSE(Start().SeesAnother());

    EXPECT_TRUE(Start().SeesAnother());
    EXPECT_TRUE(Start().SeesAnother());
}

TEST_F(SingleApplicationInstanceTest, IgnoresACopyThatHasEnded)
{
    Copy& first = Start();
    EXPECT_FALSE(first.SeesAnother());

    first.Finish();

    EXPECT_FALSE(Start().SeesAnother());
}

TEST_F(SingleApplicationInstanceTest, IgnoresACopyThatHasStoppedTheLibrary)
{
    Copy& first = Start();
    EXPECT_FALSE(first.SeesAnother());

    first.Stop();

    EXPECT_FALSE(Start().SeesAnother());
    EXPECT_TRUE(Start().SeesAnother());
}

TEST_F(SingleApplicationInstanceTest, IgnoresACrashedCopy)
{
    Copy& first = Start();
    EXPECT_FALSE(first.SeesAnother());

    first.Crash();

    EXPECT_FALSE(Start().SeesAnother());
    EXPECT_TRUE(Start().SeesAnother());
    EXPECT_EQ(ReadErrors(), "");
}

TEST_F(SingleApplicationInstanceTest, IgnoresAForkedChildOfACopyThatHasEnded)
{
    for (const bool crashes : {true, false}) {
        SCOPED_TRACE(crashes);
        Copy& first = Start();
        EXPECT_FALSE(first.SeesAnother());
        const pid_t child = first.Fork();

        crashes ? first.Crash() : first.Finish();

        Copy& second = Start();
        EXPECT_FALSE(second.SeesAnother());
        second.Finish();
        ::kill(child, SIGKILL);
    }
}

TEST_F(SingleApplicationInstanceTest, IgnoresAnotherProcessWithTheIdOfACrashedCopy)
{
    Copy& first = Start();
    EXPECT_FALSE(first.SeesAnother());
    first.Crash();

    // The process id is that of this test, which runs but is not a copy of the program.
    for (const std::string& name : {first.UniqueName(), "." + first.UniqueName() + ".lock"})
        std::ofstream(m_homePath / name) << ::getpid();

    EXPECT_FALSE(Start().SeesAnother());
}

TEST_F(SingleApplicationInstanceTest, IsSeenByWxSingleInstanceCheckerWhileItRuns)
{
    Copy& copy = Start();
    EXPECT_FALSE(copy.SeesAnother());

    EXPECT_TRUE(wxSingleInstanceChecker(copy.UniqueName()).IsAnotherRunning());
    copy.Finish();
    EXPECT_FALSE(std::filesystem::exists(m_homePath / copy.UniqueName()));
    EXPECT_FALSE(wxSingleInstanceChecker(copy.UniqueName()).IsAnotherRunning());
}

TEST_F(SingleApplicationInstanceTest, FindsAWxSingleInstanceChecker)
{
    Copy& first = Start();
    EXPECT_FALSE(first.SeesAnother());
    first.Finish();

    {
        const wxSingleInstanceChecker checker(first.UniqueName());
        EXPECT_FALSE(checker.IsAnotherRunning());
        EXPECT_TRUE(Start().SeesAnother());
    }
    EXPECT_FALSE(Start().SeesAnother());
}

TEST_F(SingleApplicationInstanceTest, KeepsADirectoryNamedLikeTheCheckersLockFile)
{
    Copy& first = Start();
    EXPECT_FALSE(first.SeesAnother());
    first.Finish();
    const std::filesystem::path file = m_homePath / first.UniqueName();
    std::filesystem::create_directory(file);

    EXPECT_FALSE(Start().SeesAnother());
    EXPECT_TRUE(Start().SeesAnother());
    m_copies.clear();

    EXPECT_TRUE(std::filesystem::is_directory(file));
    EXPECT_EQ(ReadErrors(), "");
}

TEST_F(SingleApplicationInstanceTest, KeepsAnUnrelatedFileNamedLikeTheCheckersLockFile)
{
    Copy& first = Start();
    EXPECT_FALSE(first.SeesAnother());
    first.Finish();
    const std::string name = first.UniqueName();
    const std::filesystem::path file = m_homePath / name;
    constexpr std::pair<const char*, unsigned int> cases[] = {
        {"notes", 0600}, {"", 0600}, {"99999999", 0644}, {"99999999", 0640}};
    for (const auto& [text, mode] : cases) {
        SCOPED_TRACE(text);
        std::ofstream(file) << text;
        std::filesystem::permissions(file, std::filesystem::perms(mode));

        EXPECT_FALSE(Start().SeesAnother());
        EXPECT_TRUE(Start().SeesAnother());
        m_copies.clear();

        std::string contents;
        std::getline(std::ifstream(file), contents);
        EXPECT_EQ(contents, text);
        EXPECT_TRUE(std::filesystem::remove(file));
    }
    EXPECT_EQ(ReadErrors(), "");
}

TEST_F(SingleApplicationInstanceTest, ReturnsFalseInExactlyOneConcurrentCopy)
{
    constexpr int rounds = 50;
    constexpr int copies = 3;
    for (int round = 0; round < rounds; ++round) {
        for (int copy = 0; copy < copies; ++copy)
            Spawn();
        for (const Copy& copy : m_copies)
            copy.SendLine();

        int firstCopies = 0;
        for (Copy& copy : m_copies)
            firstCopies += copy.SeesAnother() ? 0 : 1;
        EXPECT_EQ(firstCopies, 1) << "in round " << round;
        m_copies.clear();
    }
}

TEST_F(SingleApplicationInstanceTest, IgnoresTheSameProgramInAnotherDirectory)
{
    EXPECT_FALSE(Start(Install(m_directory.Path() / "one")).SeesAnother());

    EXPECT_FALSE(Start(Install(m_directory.Path() / "other")).SeesAnother());
}

TEST_F(SingleApplicationInstanceTest, AcceptsAPathTooLongForAFileName)
{
    const std::string part(100, 'x');
    const std::filesystem::path folder = m_directory.Path() / part / part / part;
    const std::filesystem::path first = Install(folder / "first");
    const std::filesystem::path second = Install(folder / "second");

    EXPECT_FALSE(Start(first).SeesAnother());
    EXPECT_TRUE(Start(first).SeesAnother());
    EXPECT_FALSE(Start(second).SeesAnother());
    EXPECT_EQ(ReadErrors(), "");
}

TEST_F(SingleApplicationInstanceTest, FindsACopyWithANonAsciiPath)
{
    const std::filesystem::path program = Install(m_directory.Path() / "gr\xC3\xBC\xC3\x9F");

    EXPECT_FALSE(Start(program).SeesAnother());
    EXPECT_TRUE(Start(program).SeesAnother());
    EXPECT_EQ(ReadErrors(), "");
}

TEST_F(SingleApplicationInstanceTest, FindsAndLogsNothingWhenNoLockCanBeCreated)
{
    m_directory.WriteFile(L"file", "");
    for (const std::filesystem::path& home :
         {m_directory.Path() / "file", std::filesystem::path("/proc")}) {
        SCOPED_TRACE(home);
        const ScopedEnvironment scopedHome("HOME", home);
        EXPECT_FALSE(Start().SeesAnother());
        EXPECT_FALSE(Start().SeesAnother());
        m_copies.clear();
        EXPECT_EQ(ReadErrors(), "");
    }
}

TEST_F(SingleApplicationInstanceTest, DoesNotFollowALinkNamedLikeTheLockFile)
{
    ReplaceTheLockFileWithALink();

    EXPECT_FALSE(Start().SeesAnother());

    EXPECT_FALSE(std::filesystem::exists(m_directory.Path() / "target"));
}

TEST_F(SingleApplicationInstanceTest, FindsCopiesThatCannotLock)
{
    ReplaceTheLockFileWithALink();

    EXPECT_FALSE(Start().SeesAnother());
    EXPECT_TRUE(Start().SeesAnother());
    EXPECT_EQ(ReadErrors(), "");
}

TEST_F(SingleApplicationInstanceTest, TreatsObjectsOfOneProcessAsOneInstance)
{
    PathManager::CreateInstance();
    auto first = std::make_unique<SingleApplicationInstance>();

    const SingleApplicationInstance second;

    EXPECT_FALSE(first->IsAlreadyRunning());
    EXPECT_FALSE(second.IsAlreadyRunning());
    first.reset();
    EXPECT_FALSE(SingleApplicationInstance().IsAlreadyRunning());
    PathManager::ReleaseInstance();
}

TEST_F(SingleApplicationInstanceTest, DoesNothingWithoutAPathManager)
{
    EXPECT_FALSE(SingleApplicationInstance().IsAlreadyRunning());
    EXPECT_TRUE(std::filesystem::is_empty(m_homePath));
}

TEST_F(SingleApplicationInstanceTest, KeepsAReferencedObjectAfterTheRelease)
{
    PathManager::CreateInstance();
    SingleApplicationInstance::CreateInstance();
    const smart_ptr<SingleApplicationInstance> copy = SingleApplicationInstance::GetInstance();

    SingleApplicationInstance::ReleaseInstance();

    EXPECT_EQ(SingleApplicationInstance::s_pInstance, nullptr);
    EXPECT_FALSE(copy->IsAlreadyRunning());
    PathManager::ReleaseInstance();
}

TEST(SingleApplicationInstancePathTest, ReturnsALockPathInTheHomeDirectory)
{
    const TestSupport::ScopedEnvironment home("HOME", "/home/ann");

    EXPECT_EQ(SingleApplicationInstance::GetLockPath(L"usrbintoolann"),
              L"/home/ann/.usrbintoolann.lock");
}

} // namespace
} // namespace Toolkit
