#include "toolkit/ipc/Socket.Private.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <string>
#include <unistd.h>

#include "mac/SystemStandIns.h"

namespace Toolkit::Ipc {
namespace {

bool IsInherited(const Base::FileDescriptor& socket)
{
    return (::fcntl(socket.Get(), F_GETFD) & FD_CLOEXEC) == 0;
}

bool IsBlocking(const Base::FileDescriptor& socket)
{
    return (::fcntl(socket.Get(), F_GETFL) & O_NONBLOCK) == 0;
}

// Calls Receive() once. Returns at most 64 bytes; an empty string on failure.
std::string ReceiveFrom(const Base::FileDescriptor& socket)
{
    char bytes[64];
    const ssize_t length = Receive(socket, bytes, sizeof bytes);
    return length > 0 ? std::string(bytes, static_cast<std::size_t>(length)) : std::string();
}

// Fixture with a client and the connection that the server has accepted from it.
class SocketMacTest : public testing::Test {
protected:
    SocketMacTest()
    {
        const std::string path = m_directory.Path() / "socket";
        EXPECT_TRUE(m_server.Listen(path));
        EXPECT_TRUE(ConnectToOwn(m_client, path));
        m_accepted = AcceptClient(m_server.Socket());
        EXPECT_TRUE(m_accepted.IsOpen());
    }

    ~SocketMacTest() override { MacStandIns::SetPeerUser(std::nullopt); }

    const TestSupport::TempDir m_directory;
    SocketFile m_server;
    Base::FileDescriptor m_client = CreateSocket();
    Base::FileDescriptor m_accepted;
};

TEST_F(SocketMacTest, SendsBytesInBothDirections)
{
    EXPECT_EQ(Send(m_client, "hello", 5), 5);
    EXPECT_EQ(ReceiveFrom(m_accepted), "hello");

    EXPECT_EQ(Send(m_accepted, "welcome", 7), 7);
    EXPECT_EQ(ReceiveFrom(m_client), "welcome");
}

TEST_F(SocketMacTest, AcceptsNoClientWhileNoneConnects)
{
    EXPECT_FALSE(AcceptClient(m_server.Socket()).IsOpen());
}

TEST_F(SocketMacTest, ClosesItsSocketsOnExec)
{
    EXPECT_FALSE(IsInherited(m_server.Socket()));
    EXPECT_FALSE(IsInherited(m_client));
    EXPECT_FALSE(IsInherited(m_accepted));
}

TEST_F(SocketMacTest, BlocksOnlyOnTheClientSocket)
{
    EXPECT_TRUE(IsBlocking(m_client));
    EXPECT_FALSE(IsBlocking(m_accepted));
}

TEST_F(SocketMacTest, SendsAsMuchAsFitsAtOnce)
{
    const std::string bytes(64 << 20, 'x');

    const ssize_t sent = Send(m_client, bytes.data(), bytes.size());

    EXPECT_GT(sent, 0);
    EXPECT_LT(sent, static_cast<ssize_t>(bytes.size()));
}

TEST_F(SocketMacTest, FailsWithoutASignalWhenTheClientIsClosed)
{
    m_client.Close();

    EXPECT_EQ(Send(m_accepted, "x", 1), -1);
    EXPECT_EQ(errno, EPIPE);
}

TEST_F(SocketMacTest, FailsWithoutASignalWhenTheServerIsClosed)
{
    m_accepted.Close();

    EXPECT_EQ(Send(m_client, "x", 1), -1);
    EXPECT_EQ(errno, EPIPE);
}

TEST_F(SocketMacTest, ReportsThisUserAtBothEnds)
{
    EXPECT_TRUE(IsPeerOfThisUser(m_accepted));
    EXPECT_TRUE(IsPeerOfThisUser(m_client));
}

TEST_F(SocketMacTest, RejectsAPeerOfAnotherUser)
{
    MacStandIns::SetPeerUser(::geteuid() + 1);

    EXPECT_FALSE(IsPeerOfThisUser(m_accepted));
}

TEST_F(SocketMacTest, RejectsASocketWithoutAPeer)
{
    EXPECT_FALSE(IsPeerOfThisUser(CreateSocket()));
    EXPECT_FALSE(IsPeerOfThisUser(Base::FileDescriptor()));
}

} // namespace
} // namespace Toolkit::Ipc
