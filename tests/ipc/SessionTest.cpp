#include "toolkit/ipc/Session.Private.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace Toolkit::Ipc {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;

constexpr int c_ticksInTwoSeconds = 8;
constexpr int c_ticksInThirtySeconds = 120;

// Fixture with a session and its client. The test controls the clock.
class SessionTest : public testing::Test {
protected:
    SessionTest()
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends), 0);
        m_client = Base::FileDescriptor(ends[0]);
        m_session = std::make_unique<Session>(Base::FileDescriptor(ends[1]), m_execute);
    }

    bool Send(const std::string& bytes)
    {
        const ssize_t count = Ipc::Send(m_client, bytes.data(), bytes.size());
        EXPECT_EQ(count, static_cast<ssize_t>(bytes.size()));
        return m_session->Read();
    }

    // Sends one byte per tick, which counts as a quarter of a second.
    void Trickle(int bytes)
    {
        for (int i = 0; i < bytes; ++i) {
            m_session->CountTick();
            EXPECT_TRUE(Send("x"));
        }
    }

    std::vector<std::string> m_messages;
    const Execute m_execute = [this](const std::vector<char>& data, unsigned char) {
        m_messages.emplace_back(data.begin(), data.end());
        return true;
    };
    Base::FileDescriptor m_client;
    std::unique_ptr<Session> m_session;
};

TEST_F(SessionTest, IsOverdueAfterTwoSecondsWithoutATopic)
{
    for (int tick = 0; tick < c_ticksInTwoSeconds; ++tick)
        m_session->CountTick();
    EXPECT_FALSE(m_session->IsOverdue());

    m_session->CountTick();

    EXPECT_TRUE(m_session->IsOverdue());
}

TEST_F(SessionTest, IsOverdueWhenAMessageIsNotCompleteAfterThirtySeconds)
{
    EXPECT_TRUE(Send("\x0A\x01\0\0\0t\x01\x01\0\x01\0\0"s));

    Trickle(c_ticksInThirtySeconds);
    EXPECT_FALSE(m_session->IsOverdue());
    Trickle(1);

    EXPECT_TRUE(m_session->IsOverdue());
}

TEST_F(SessionTest, IsOverdueWhenATopicIsNotCompleteAfterThirtySeconds)
{
    EXPECT_TRUE(Send("\x0A\0\x01\0\0"s));

    Trickle(c_ticksInThirtySeconds + 1);

    EXPECT_TRUE(m_session->IsOverdue());
}

TEST_F(SessionTest, CountsTheTimeOfEachMessageSeparately)
{
    EXPECT_TRUE(Send("\x0A\x01\0\0\0t"s));

    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(Send("\x01\x01\x64\0\0\0"s));
        Trickle(100);
        EXPECT_FALSE(m_session->IsOverdue());
    }

    EXPECT_THAT(m_messages, testing::SizeIs(3));
}

TEST_F(SessionTest, IsNeverOverdueBetweenMessages)
{
    EXPECT_TRUE(Send("\x0A\x01\0\0\0t"s));

    for (int tick = 0; tick < 1000; ++tick)
        m_session->CountTick();

    EXPECT_FALSE(m_session->IsOverdue());
    EXPECT_TRUE(Send("\x01\x01\x01\0\0\0a"s));
    EXPECT_THAT(m_messages, ElementsAre("a"));
}

TEST_F(SessionTest, IsSilentAfterTwoTicksWithoutBytes)
{
    m_session->CountTick();
    EXPECT_FALSE(m_session->IsSilent());
    m_session->CountTick();
    EXPECT_TRUE(m_session->IsSilent());

    EXPECT_TRUE(Send("\x0A"));

    EXPECT_FALSE(m_session->IsSilent());
}

} // namespace
} // namespace Toolkit::Ipc
