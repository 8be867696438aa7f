#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/ipc/IPCClient.h"
#include "toolkit/ipc/IPCServer.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <list>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "ipc/ChildProgram.h"
#include "ipc/ServerFixture.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::c_connect;
using TestSupport::c_executeA;
using TestSupport::ChildProgram;
using TestSupport::RawSocket;
using TestSupport::ServeWhile;
using TestSupport::TempDir;

constexpr uid_t c_otherUser = 65534;

// Runs `action` in a forked child and returns its result; -1 if the child crashes.
int RunInChild(const std::function<int()>& action)
{
    const pid_t process = ::fork();
    if (process == 0)
        ::_exit(action());
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Like RunInChild(), but as another user.
int RunAsOtherUser(const std::function<int()>& action)
{
    return RunInChild([&] { return ::setuid(c_otherUser) == 0 ? action() : 255; });
}

const wchar_t* const c_lockName = L".service.takeover";

std::vector<std::string> ListFiles(const TempDir& directory)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory.Path()))
        names.push_back(entry.path().filename());
    return names;
}

using IPCServiceTest = TestSupport::ServerFixture;

TEST_F(IPCServiceTest, CreatesASocketFileThatOnlyItsOwnerCanUse)
{
    for (const mode_t mask : {0U, 022U, 077U}) {
        const mode_t oldMask = ::umask(mask);
        const auto server = RunServer();
        ::umask(oldMask);
        struct stat status {};
        EXPECT_EQ(::stat(Path().c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0600u);
    }
}

TEST_F(IPCServiceTest, DoesNotLetAnotherUserConnect)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may become another user";
    const auto server = RunServer();
    std::filesystem::permissions(m_directory.Path(), std::filesystem::perms(0755));

    EXPECT_EQ(RunAsOtherUser(
                  [this] { return RawSocket().Connect(Path()) == -1 && errno == EACCES ? 0 : 1; }),
              0);
}

TEST_F(IPCServiceTest, DoesNotAnswerAnotherUser)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may become another user";
    const auto server = RunServer();
    std::filesystem::permissions(m_directory.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(Path(), std::filesystem::perms(0666));

    ServeWhile([&] {
        EXPECT_EQ(RunAsOtherUser([this] {
                      const RawSocket client;
                      if (client.Connect(Path()) != 0)
                          return 2;
                      client.Send(c_connect + c_executeA);
                      return client.ReceiveAll().empty() ? 0 : 1;
                  }),
                  0);
        EXPECT_TRUE(ServerDelivers());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

TEST_F(IPCServiceTest, ReplacesTheFileOfACrashedServer)
{
    ChildProgram crashed(TOOLKIT_TEST_IPC_SERVER, {Path()});
    EXPECT_EQ(crashed.ReadLine(), "ready");
    crashed.Send(SIGKILL);
    crashed.WaitForExitCode();
    EXPECT_TRUE(IsSocket());

    const auto server = RunServer();

    ServeWhile([&] { EXPECT_TRUE(ServerDelivers()); });
}

TEST_F(IPCServiceTest, CreatesNoFileButItsSocket)
{
    const auto server = RunServer();

    EXPECT_THAT(ListFiles(m_directory), ElementsAre("service"));
    EXPECT_THAT(ListFiles(m_homeDirectory), IsEmpty());
}

TEST_F(IPCServiceTest, LeavesNoFileBehind)
{
    EXPECT_EQ(RawSocket().Bind(Path()), 0);
    RunServer().reset();

    EXPECT_THAT(ListFiles(m_directory), IsEmpty());
    EXPECT_THAT(ListFiles(m_homeDirectory), IsEmpty());
}

TEST_F(IPCServiceTest, RemovesTheLockFileOfACrashedServer)
{
    m_directory.WriteFile(c_lockName, "");
    std::filesystem::permissions(m_directory.Path() / c_lockName, std::filesystem::perms(0600));

    const auto server = RunServer();

    EXPECT_THAT(ListFiles(m_directory), ElementsAre("service"));
}

TEST_F(IPCServiceTest, KeepsANonEmptyFileNamedLikeTheLock)
{
    m_directory.WriteFile(c_lockName, "content");

    RunServer().reset();

    EXPECT_EQ(m_directory.ReadFile(c_lockName), "content");
}

TEST_F(IPCServiceTest, DoesNotRunWhileAnotherServerHoldsTheLock)
{
    const int lock = ::open((m_directory.Path() / c_lockName).c_str(), O_RDWR | O_CREAT, 0600);
    EXPECT_EQ(::flock(lock, LOCK_EX), 0);

    EXPECT_FALSE(CreateServer()->Run());

    ::close(lock);
    EXPECT_TRUE(CreateServer()->Run());
}

TEST_F(IPCServiceTest, DoesNotReplaceARunningServer)
{
    const auto first = RunServer();

    auto second = CreateServer();
    EXPECT_FALSE(second->Run());
    second.reset();

    EXPECT_TRUE(IsSocket());
    ServeWhile([&] { EXPECT_TRUE(ServerDelivers()); });
}

TEST_F(IPCServiceTest, DoesNotReplaceASuspendedServer)
{
    const ChildProgram stopped(TOOLKIT_TEST_IPC_SERVER, {Path()});
    EXPECT_EQ(stopped.ReadLine(), "ready");
    stopped.Send(SIGSTOP);

    EXPECT_FALSE(CreateServer()->Run());

    stopped.Send(SIGCONT);
    EXPECT_TRUE(IPCClient::Connect(Service(), L"still there"));
    EXPECT_EQ(stopped.ReadLine(), "still there");
}

TEST_F(IPCServiceTest, RunsOnlyOneOfTheServersThatStartTogether)
{
    constexpr int rounds = 10;
    for (int round = 0; round < rounds; ++round) {
        EXPECT_EQ(RawSocket().Bind(Path()), 0);
        std::list<ChildProgram> servers;
        for (int i = 0; i < 4; ++i)
            servers.emplace_back(TOOLKIT_TEST_IPC_SERVER, std::vector<std::string>{Path()});
        int running = 0;
        for (const ChildProgram& server : servers)
            running += server.ReadLine() == "ready" ? 1 : 0;
        EXPECT_EQ(running, 1) << "in round " << round;
        EXPECT_TRUE(IPCClient::Connect(Service(), L"quit"));
        for (ChildProgram& server : servers)
            server.WaitForExitCode();
        EXPECT_FALSE(std::filesystem::exists(Path()));
    }
}

TEST_F(IPCServiceTest, ReplacesOnlyASocket)
{
    m_directory.WriteFile(L"file", "content");
    std::filesystem::create_directory(m_directory.Path() / "directory");
    EXPECT_EQ(RawSocket().Bind(m_directory.Path() / "stale"), 0);
    std::filesystem::create_symlink("stale", m_directory.Path() / "link");

    for (const wchar_t* name : {L"file", L"directory", L"link", L"none/service", L"directory/"})
        EXPECT_FALSE(CreateServer(m_directory.File(name))->Run())
            << UTF8::ToUTF8(std::wstring(name));

    EXPECT_EQ(m_directory.ReadFile(L"file"), "content");
    EXPECT_TRUE(std::filesystem::is_symlink(m_directory.Path() / "link"));
    EXPECT_TRUE(std::filesystem::is_socket(m_directory.Path() / "stale"));
}

TEST_F(IPCServiceTest, DoesNotReplaceTheSocketOfAnotherUser)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root may change the owner of a file";
    EXPECT_EQ(RawSocket().Bind(Path()), 0);
    EXPECT_EQ(::chown(Path().c_str(), c_otherUser, c_otherUser), 0);

    EXPECT_FALSE(CreateServer()->Run());

    EXPECT_TRUE(IsSocket());
}

TEST_F(IPCServiceTest, RemovesItsFileWhenDestroyed)
{
    auto server = RunServer();
    EXPECT_TRUE(IsSocket());

    server.reset();

    EXPECT_FALSE(std::filesystem::exists(Path()));
    EXPECT_FALSE(IPCClient::Connect(Service(), L"text"));
}

TEST_F(IPCServiceTest, DoesNotRemoveTheFileOfAnotherServer)
{
    auto server = RunServer();
    std::filesystem::remove(Path());
    const RawSocket other = RawSocket::ListeningAt(Path());

    server.reset();

    EXPECT_TRUE(IsSocket());
}

TEST_F(IPCServiceTest, RemovesNoFileInAForkedChild)
{
    auto server = RunServer();

    EXPECT_EQ(RunInChild([&] {
                  server.reset();
                  return 0;
              }),
              0);

    EXPECT_TRUE(IsSocket());
    ServeWhile([&] { EXPECT_TRUE(ServerDelivers()); });
}

TEST_F(IPCServiceTest, UsesTheWorkingDirectoryForABareName)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_directory.Path());
    auto server = CreateServer(L"service");
    EXPECT_TRUE(server->Run());
    EXPECT_TRUE(IsSocket());
    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(L"service", L"relative"));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"relative"));
    });

    std::filesystem::current_path(before);
    server.reset();

    EXPECT_FALSE(std::filesystem::exists(Path()));
}

TEST_F(IPCServiceTest, RejectsAnInvalidName)
{
    EXPECT_FALSE(CreateServer(L"0")->Run());
    EXPECT_FALSE(CreateServer(L"42424")->Run());
    EXPECT_FALSE(CreateServer(std::wstring(L"\0abstract", 9))->Run());
}

TEST_F(IPCServiceTest, ShortensALongNameLikeTheClient)
{
    constexpr std::size_t maxPathLength = 107; // of a socket address, without the null byte
    for (const std::size_t length : {100U, 107U, 108U, 150U, 255U}) {
        SCOPED_TRACE(length);
        const std::size_t nameLength = length - m_directory.Path().native().size() - 1;
        const TString<wchar_t> service = m_directory.File(std::wstring(nameLength, L'x'));
        const auto server = CreateServer(service);
        ASSERT_TRUE(server->Run());
        EXPECT_FALSE(IPCClient::Connect(service + L"x", L"not this one"));
        EXPECT_EQ(std::filesystem::is_socket(std::string(UTF8::ToUTF8(service))),
                  length <= maxPathLength);
        const std::size_t before = m_received.All().size();
        ServeWhile([&] {
            EXPECT_TRUE(IPCClient::Connect(service, L"text"));
            EXPECT_EQ(m_received.Await(before + 1).size(), before + 1);
        });
    }
}

TEST_F(IPCServiceTest, NamesTheDefaultServiceAfterTheApplication)
{
    PathManager::CreateInstance();
    const TString<wchar_t> service =
        L"/tmp/" + PathManager::GetInstance()->GetApplicationUniqueName() + L".ipc";
    const auto server = CreateServer(L"");
    PathManager::ReleaseInstance();
    ASSERT_TRUE(server->Run());

    ServeWhile([&] {
        EXPECT_TRUE(IPCClient::Connect(service, L"text"));
        EXPECT_THAT(m_received.Await(1), ElementsAre(L"text"));
    });
}

TEST_F(IPCServiceTest, HasNoDefaultServiceWithoutAPathManager)
{
    EXPECT_FALSE(CreateServer(L"")->Run());
}

TEST_F(IPCServiceTest, ChangesNothingWhenRunIsCalledAgain)
{
    const auto server = RunServer();

    EXPECT_TRUE(server->Run());

    ServeWhile([&] { EXPECT_TRUE(ServerDelivers()); });
}

TEST_F(IPCServiceTest, CreatesItsFileAgainWhenRunFindsItDeleted)
{
    const auto server = RunServer();
    std::filesystem::remove(Path());

    EXPECT_TRUE(server->Run());

    EXPECT_TRUE(IsSocket());
    ServeWhile([&] { EXPECT_TRUE(ServerDelivers()); });
}

TEST_F(IPCServiceTest, ReturnsTheSocketPathOfAService)
{
    const std::pair<TString<wchar_t>, TString<wchar_t>> cases[] = {
        {L"/tmp/example.ipc", L"/tmp/example.ipc"},
        {L"run/example", L"run/example"},
        {L"example", L"./example"},
        {L"h\u00E9", L"./h\u00E9"},
        {L"1234", L""}};
    for (const auto& [service, expected] : cases)
        EXPECT_EQ(IPCServer::GetSocketPath(service), expected);
}

TEST_F(IPCServiceTest, ReturnsTheSocketPathThatRunCreates)
{
    const TString<wchar_t> service = m_directory.File(std::wstring(150, L'x'));
    const auto server = CreateServer(service);
    ASSERT_TRUE(server->Run());

    const TString<wchar_t> path = IPCServer::GetSocketPath(service);

    EXPECT_EQ(path.size(), 107u);
    EXPECT_TRUE(std::filesystem::is_socket(std::string(UTF8::ToUTF8(path))));
}

// A shortened name has at most 107 bytes: up to 91 of the beginning and a hash of 16. Here the
// beginning is "/" and 45 two-byte characters, or "/x" and 44.
TEST_F(IPCServiceTest, ShortensALongNameBetweenCharacters)
{
    const std::wstring service = L"/" + std::wstring(54, L'\u00E9');

    EXPECT_EQ(IPCServer::GetSocketPath(service).substr(0, 46), L"/" + std::wstring(45, L'\u00E9'));
    EXPECT_EQ(IPCServer::GetSocketPath(L"/x" + std::wstring(54, L'\u00E9')).substr(0, 46),
              L"/x" + std::wstring(44, L'\u00E9'));
}

TEST_F(IPCServiceTest, ReturnsTheSocketPathOfTheDefaultService)
{
    EXPECT_EQ(IPCServer::GetSocketPath(L""), L"");
    PathManager::CreateInstance();
    const TString<wchar_t> name = PathManager::GetInstance()->GetApplicationUniqueName();

    EXPECT_EQ(IPCServer::GetSocketPath(L""), L"/tmp/" + name + L".ipc");

    PathManager::ReleaseInstance();
}

} // namespace
} // namespace Toolkit
