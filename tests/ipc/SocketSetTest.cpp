#include "toolkit/ipc/Socket.Private.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

// Compiled with the Linux sources, and with the macOS sources against stand-ins for system calls.
namespace Toolkit::Ipc {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// Two connected sockets: what is written to `writer` can be read from `reader`.
struct SocketPair {
    SocketPair()
    {
        int sockets[2] = {-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, sockets), 0);
        reader = Base::FileDescriptor(sockets[0]);
        writer = Base::FileDescriptor(sockets[1]);
    }

    void Write() const { EXPECT_EQ(::write(writer.Get(), "x", 1), 1); }

    Base::FileDescriptor reader;
    Base::FileDescriptor writer;
};

// Waits until the set's clock ticks. Returns false if it has not after ten seconds.
bool WaitForTick(SocketSet& set)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < end) {
        for (const int descriptor : set.PollReadable()) {
            if (descriptor == SocketSet::c_tick)
                return true;
        }
        std::this_thread::yield();
    }
    return false;
}

class SocketSetTest : public testing::Test {
protected:
    SocketSetTest()
    {
        EXPECT_TRUE(m_set.IsUsable());
        EXPECT_TRUE(m_set.Add(m_first.reader.Get()));
        EXPECT_TRUE(m_set.Add(m_second.reader.Get()));
    }

    SocketPair m_first;
    SocketPair m_second;
    SocketSet m_set;
};

TEST_F(SocketSetTest, FindsNothingWhileNothingIsReadable)
{
    EXPECT_THAT(m_set.PollReadable(), IsEmpty());
}

TEST_F(SocketSetTest, FindsTheSocketsThatAreReadable)
{
    m_second.Write();
    EXPECT_THAT(m_set.PollReadable(), ElementsAre(m_second.reader.Get()));

    m_first.Write();
    EXPECT_THAT(m_set.PollReadable(),
                UnorderedElementsAre(m_first.reader.Get(), m_second.reader.Get()));
}

TEST_F(SocketSetTest, FindsASocketWhoseOtherEndIsClosed)
{
    m_first.writer.Close();

    EXPECT_THAT(m_set.PollReadable(), ElementsAre(m_first.reader.Get()));
}

TEST_F(SocketSetTest, ForgetsARemovedSocket)
{
    m_first.Write();

    EXPECT_TRUE(m_set.Remove(m_first.reader.Get()));

    EXPECT_THAT(m_set.PollReadable(), IsEmpty());
}

TEST_F(SocketSetTest, FailsToRemoveASocketThatIsNotInTheSet)
{
    const SocketPair other;

    EXPECT_FALSE(m_set.Remove(other.reader.Get()));
}

TEST_F(SocketSetTest, FindsTicksAndSockets)
{
    m_set.SetTicking(1);
    m_first.Write();

    EXPECT_TRUE(WaitForTick(m_set));
    EXPECT_THAT(m_set.PollReadable(), Contains(m_first.reader.Get()));
}

TEST_F(SocketSetTest, ReportsSeveralTicksOnce)
{
    m_set.SetTicking(1);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));

    EXPECT_THAT(m_set.PollReadable(), ElementsAre(SocketSet::c_tick));
}

TEST_F(SocketSetTest, StopsTicking)
{
    m_set.SetTicking(1);
    EXPECT_TRUE(WaitForTick(m_set));

    m_set.SetTicking(0);

    m_set.PollReadable();
    EXPECT_THAT(m_set.PollReadable(), IsEmpty());
}

} // namespace
} // namespace Toolkit::Ipc
