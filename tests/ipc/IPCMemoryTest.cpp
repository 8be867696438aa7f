// Tests clients and servers that run out of memory.

#include "toolkit/ipc/IPCClient.h"
#include "toolkit/ipc/IPCServer.h"

#include "support/OutOfMemory.h"

#include <gmock/gmock.h>

#include "ipc/ChildProgram.h"
#include "ipc/ServerFixture.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using TestSupport::AllocationLimit;
using TestSupport::ChildProgram;
using TestSupport::FailingAllocation;
using TestSupport::RawSocket;
using TestSupport::ServeWhile;
using namespace std::string_literals;

using IPCMemoryTest = TestSupport::ServerFixture;

constexpr std::size_t c_mebibyte = std::size_t{1} << 20;

TEST_F(IPCMemoryTest, DisconnectsAClientWhoseDataDoesNotFit)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const std::string data(8 * c_mebibyte, 'x');
        {
            const AllocationLimit limit(c_mebibyte);
            const RawSocket client = ConnectWithTopic();
            EXPECT_TRUE(client.Send("\x01\x01\0\0\x80\0"s));
            EXPECT_FALSE(client.Send(data));
        }
        EXPECT_TRUE(ServerDelivers());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

// The received data fits into memory, but the string made from it does not.
TEST_F(IPCMemoryTest, DisconnectsAClientWhoseDecodedDataDoesNotFit)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const std::string data(c_mebibyte, 'x');
        {
            const AllocationLimit limit(2 * c_mebibyte);
            const RawSocket client = ConnectWithTopic();
            EXPECT_TRUE(client.Send("\x01\x11\0\0\x10\0"s));
            EXPECT_TRUE(client.Send(data));
            EXPECT_TRUE(client.IsClosedByPeer());
        }
        EXPECT_TRUE(ServerDelivers());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

TEST_F(IPCMemoryTest, ReportsToTheClientThatAMessageDoesNotFit)
{
    const auto server = RunServer();

    ServeWhile([&] {
        {
            const AllocationLimit limit(c_mebibyte);
            ChildProgram client(TOOLKIT_TEST_IPC_CLIENT, {Path(), "text", "1", "4000000"});
            EXPECT_EQ(client.WaitForExitCode(), 1);
        }
        EXPECT_TRUE(ServerDelivers());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

// Constructs an IPCServer while one allocation fails. Returns the server, null if the constructor
// threw std::bad_alloc, and whether that allocation was reached.
std::pair<std::unique_ptr<IPCServer>, bool>
ConstructWithFailingAllocation(long allocation, const TString<wchar_t>& service)
{
    void* const memory = operator new(sizeof(IPCServer));
    const FailingAllocation failing(allocation);
    try {
        return {std::unique_ptr<IPCServer>(new (memory) IPCServer(service)), failing.HasFailed()};
    } catch (const std::bad_alloc&) {
        operator delete(memory);
        return {nullptr, true};
    }
}

TEST_F(IPCMemoryTest, SurvivesAFailedAllocationInTheConstructor)
{
    int thrown = 0;
    for (long index = 0;; ++index) {
        SCOPED_TRACE(index);
        const auto [server, hasFailed] = ConstructWithFailingAllocation(index, Service());
        thrown += server ? 0 : 1;
        if (!server)
            continue;
        const bool runs = server->Run();
        if (!hasFailed) {
            EXPECT_TRUE(runs);
            break;
        }
        server->SendExecuteEvent(L"local");
    }
    // The constructor throws only while it creates the listeners' lock, which takes a few
    // allocations.
    EXPECT_LT(thrown, 5);
}

TEST_F(IPCMemoryTest, SendsAMessageOrReturnsFalseWhenOutOfMemory)
{
    const auto server = RunServer();
    ServeWhile([&] {
        const TString<wchar_t> service = Service();
        const TString<wchar_t> message(std::wstring(100, L'x'));
        std::size_t sent = 0;
        for (long index = 0;; ++index) {
            const FailingAllocation failing(index);
            const bool isSent = IPCClient::Connect(service, message);
            sent += isSent ? 1 : 0;
            if (!failing.HasFailed()) {
                EXPECT_TRUE(isSent);
                break;
            }
        }
        EXPECT_EQ(m_received.Await(sent).size(), sent);
    });
}

TEST_F(IPCMemoryTest, ReportsNoSocketPathOrNoServerWhenOutOfMemory)
{
    const TString<wchar_t> service = Service();
    const auto server = RunServer();
    for (long index = 0;; ++index) {
        const FailingAllocation failing(index);
        const TString<wchar_t> path = IPCServer::GetSocketPath(service);
        const bool isServed = IPCClient::IsServed(service);
        if (!failing.HasFailed()) {
            EXPECT_EQ(path, service);
            EXPECT_TRUE(isServed);
            break;
        }
        EXPECT_TRUE(path.empty() || !isServed);
    }
}

} // namespace
} // namespace Toolkit
