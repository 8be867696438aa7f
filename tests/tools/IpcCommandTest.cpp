#include "toolkit/ipc/IPCClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "RunningCommand.h"
#include "ToolFixture.h"

namespace Toolkit::TestSupport {
namespace {

using testing::HasSubstr;
using testing::Not;

class IpcCommandTest : public ToolFixture {
protected:
    ~IpcCommandTest() override { std::filesystem::remove(ListedPath()); }

    std::string Service() const { return PathOf("app.ipc"); }

    // Returns a path in /tmp, where applications have their sockets.
    std::string ListedPath() const
    {
        return "/tmp/toolkit-ipc-test-" + std::to_string(::getpid()) + ".ipc";
    }
};

TEST_F(IpcCommandTest, PrintsReceivedMessages)
{
    RunningCommand server({"ipc", "listen", Service()});
    server.ReadUntil("toolkit: listening at " + Service() + "\n");

    const ProgramResult result = Run({"ipc", "send", Service(), "h\xC3\xA9 \x1B"});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output + result.errors, "");
    server.ReadUntil("\nh\xC3\xA9 \\x1B\n");
    EXPECT_EQ(server.SignalAndWait(SIGINT), 0);
    EXPECT_FALSE(std::filesystem::exists(Service()));
}

TEST_F(IpcCommandTest, StopsListeningAfterTheRequestedNumberOfMessages)
{
    RunningCommand server({"ipc", "listen", "--count", "2", Service()});
    server.ReadUntil("listening");

    Run({"ipc", "send", Service(), "one"});
    Run({"ipc", "send", Service(), "two"});

    server.ReadUntil("two\n");
    EXPECT_EQ(server.Wait(), 0);
}

TEST_F(IpcCommandTest, StopsListeningWhenItsOutputIsClosed)
{
    RunningCommand server({"ipc", "listen", Service()});
    server.ReadUntil("listening");

    server.CloseOutput();

    EXPECT_EQ(server.Wait(), -SIGPIPE);
    EXPECT_FALSE(std::filesystem::exists(Service()));
}

TEST_F(IpcCommandTest, StopsListeningCleanlyOnASignal)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        SCOPED_TRACE(signal);
        RunningCommand server({"ipc", "listen", Service()});
        server.ReadUntil("listening");

        EXPECT_EQ(server.SignalAndWait(signal), 0);
        EXPECT_FALSE(std::filesystem::exists(Service()));
    }
}

TEST_F(IpcCommandTest, ReportsThatNoServerListens)
{
    const ProgramResult result = Run({"ipc", "send", Service(), "x"});

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "toolkit: not delivered: no server listens at " + Service() + "\n");
}

TEST_F(IpcCommandTest, FailsForASecondServer)
{
    RunningCommand server({"ipc", "listen", Service()});
    server.ReadUntil("listening");

    const ProgramResult result = Run({"ipc", "listen", Service()});

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors,
              "toolkit: cannot listen at " + Service() + ": another server listens there\n");
}

TEST_F(IpcCommandTest, ReportsWhyItCannotListen)
{
    const std::string file = Write(L"file.ipc", "text");
    const ProgramResult taken = Run({"ipc", "listen", file});
    EXPECT_EQ(taken.exitCode, 2);
    EXPECT_EQ(taken.errors, "toolkit: cannot listen at " + file +
                                ": the file exists and is not a socket of this user\n");

    const ProgramResult missing = Run({"ipc", "listen", PathOf("none/x.ipc")});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_EQ(missing.errors, "toolkit: cannot listen at " + PathOf("none/x.ipc") +
                                  ": No such file or directory\n");
}

TEST_F(IpcCommandTest, RejectsANumberAsAServiceName)
{
    EXPECT_EQ(Run({"ipc", "send", "1234", "x"}).errors,
              "toolkit: not a valid service name: \"1234\"\n");
}

TEST_F(IpcCommandTest, ListsLiveAndStaleSockets)
{
    {
        RunningCommand server({"ipc", "listen", ListedPath()});
        server.ReadUntil("listening");
        EXPECT_THAT(Run({"ipc", "list"}).output, HasSubstr("live  " + ListedPath() + "\n"));
    } // the server is killed

    EXPECT_THAT(Run({"ipc", "list"}).output, HasSubstr("stale " + ListedPath() + "\n"));
}

TEST_F(IpcCommandTest, ListsTheSocketsInTheWorkingDirectory)
{
    RunningCommand server({"ipc", "listen", Service()});
    server.ReadUntil("listening");
    RunningCommand other({"ipc", "listen", PathOf("app.other")});
    other.ReadUntil("listening");

    const std::string list = RunInShell("cd $dir && $toolkit ipc list").output;

    EXPECT_THAT(list, HasSubstr("live  " + Service() + "\n"));
    EXPECT_THAT(list, Not(HasSubstr("app.other")));
}

TEST_F(IpcCommandTest, ListsASocketOnceWhenRunInTmp)
{
    RunningCommand server({"ipc", "listen", ListedPath()});
    server.ReadUntil("listening");

    EXPECT_EQ(RunInShell("cd /tmp && $toolkit ipc list | grep -c -F " + ListedPath()).output,
              "1\n");
}

} // namespace
} // namespace Toolkit::TestSupport
