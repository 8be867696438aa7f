// Tests clients and servers that run out of memory.

#include "toolkit/ipc/IPCClient.h"
#include "toolkit/ipc/IPCServer.h"

#include "support/OutOfMemory.h"

#include <gmock/gmock.h>
#include <wx/ipcbase.h>

#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <utility>

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

using IPCMemoryTest = TestSupport::ServerFixture;

constexpr std::size_t c_mebibyte = std::size_t{1} << 20;

// Returns the header of an Execute message with `size` bytes of data.
std::string MakeExecuteHeader(wxIPCFormat format, std::size_t size)
{
    std::string header{'\x01', static_cast<char>(format)};
    for (int shift = 0; shift < 32; shift += 8)
        header.push_back(static_cast<char>(size >> shift));
    return header;
}

TEST_F(IPCMemoryTest, DisconnectsAClientWhoseDataDoesNotFitIntoMemory)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const std::string data(8 * c_mebibyte, 'x');
        {
            const AllocationLimit limit(c_mebibyte);
            const RawSocket client = ConnectWithTopic();
            EXPECT_TRUE(client.Send(MakeExecuteHeader(wxIPC_TEXT, data.size())));
            EXPECT_FALSE(client.Send(data));
        }
        EXPECT_TRUE(ServerDelivers());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

// The received data fits into memory, but the wide string decoded from it does not.
TEST_F(IPCMemoryTest, DisconnectsAClientWhoseDecodedDataDoesNotFitIntoMemory)
{
    const auto server = RunServer();

    ServeWhile([&] {
        const std::string data(c_mebibyte, 'x');
        {
            const AllocationLimit limit(2 * c_mebibyte);
            const RawSocket client = ConnectWithTopic();
            EXPECT_TRUE(client.Send(MakeExecuteHeader(wxIPC_UTF8TEXT, data.size())));
            EXPECT_TRUE(client.Send(data));
            EXPECT_TRUE(client.IsClosedByPeer());
        }
        EXPECT_TRUE(ServerDelivers());
    });
    EXPECT_THAT(m_received.All(), ElementsAre(L"served"));
}

TEST_F(IPCMemoryTest, FailsToSendAMessageThatDoesNotFitIntoTheMemoryOfTheServer)
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

// Constructs an IPCServer and makes one allocation of its constructor fail: `index` 0 is the first.
// Returns the server (null if the constructor threw std::bad_alloc) and whether that allocation was
// reached.
std::pair<std::unique_ptr<IPCServer>, bool>
ConstructWithFailingAllocation(long index, const TString<wchar_t>& service)
{
    // Allocated first, so that only the constructor's own allocations are counted.
    void* const memory = operator new(sizeof(IPCServer));
    const FailingAllocation failing(index);
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
        if (!server) {
            ++thrown;
            continue;
        }
        EXPECT_EQ(server->Run(), !hasFailed);
        if (!hasFailed)
            break;
        server->SendExecuteEvent(L"local");
    }
    // The constructor throws only if EventNotifier cannot create its mutex. Creating the mutex
    // makes fewer than five allocations.
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

TEST_F(IPCMemoryTest, ReturnsAnEmptyPathOrFindsNoServerWhenOutOfMemory)
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
        // The allocation failed either in GetSocketPath() or in IsServed().
        EXPECT_TRUE(path.empty() || !isServed);
    }
}

} // namespace
} // namespace Toolkit
