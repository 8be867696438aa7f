#include "toolkit/ipc/Session.Private.h"

#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "ipc/RawSocket.h"

namespace Toolkit::Ipc {
namespace {

using testing::ElementsAre;
using TestSupport::RawSocket;
using TestSupport::TempDir;

// Fixture with a server that the test drives step by step.
class SessionsTest : public testing::Test {
protected:
    SessionsTest() { EXPECT_TRUE(m_sessions.Listen(m_path)); }

    // Returns a client whose topic has been answered.
    RawSocket Connect()
    {
        RawSocket client = RawSocket::ConnectedTo(m_path);
        client.Send(MakeConnectRequest(L"topic"));
        ServeRounds(3);
        EXPECT_EQ(client.Receive(1).size(), 1U);
        return client;
    }

    void ServeRounds(int rounds)
    {
        for (int i = 0; i < rounds; ++i)
            m_sessions.ServeReadable();
    }

    const TempDir m_directory;
    const std::string m_path = m_directory.Path() / "socket";
    std::vector<std::size_t> m_sizes; // of the messages, in bytes
    Sessions m_sessions{16, [this](const std::vector<char>& data, unsigned char) {
                            m_sizes.push_back(data.size());
                            return true;
                        }};
};

std::size_t SizeOf(const std::wstring& message)
{
    return (message.size() + 1) * sizeof(wchar_t);
}

TEST_F(SessionsTest, DeliversALongMessageBeforeAShortOneSentLater)
{
    const std::wstring longMessage(40000, L'x'); // fits into a socket's buffer
    const std::wstring shortMessage(1, L'x');
    const RawSocket first = Connect();
    const RawSocket second = Connect();

    first.Send(MakeExecuteRequest(longMessage));
    second.Send(MakeExecuteRequest(shortMessage));
    ServeRounds(10);

    EXPECT_THAT(m_sizes, ElementsAre(SizeOf(longMessage), SizeOf(shortMessage)));
}

TEST_F(SessionsTest, DeliversALongMessageBeforeTheMessageOfALaterClient)
{
    const std::wstring longMessage(40000, L'x');
    const std::wstring shortMessage(1, L'x');
    const RawSocket first = Connect();

    first.Send(MakeExecuteRequest(longMessage));
    const RawSocket second = RawSocket::ConnectedTo(m_path);
    second.Send(MakeConnectRequest(L"topic") + MakeExecuteRequest(shortMessage));
    ServeRounds(10);

    EXPECT_THAT(m_sizes, ElementsAre(SizeOf(longMessage), SizeOf(shortMessage)));
}

TEST_F(SessionsTest, DeliversMessagesInTheOrderOfSending)
{
    const RawSocket first = Connect();
    const RawSocket second = Connect();

    second.Send(MakeExecuteRequest(L"1st"));
    first.Send(MakeExecuteRequest(L"second"));
    ServeRounds(1);

    EXPECT_THAT(m_sizes, ElementsAre(SizeOf(L"1st"), SizeOf(L"second")));
}

} // namespace
} // namespace Toolkit::Ipc
