#pragma once

#include "toolkit/ipc/IPCClient.h"
#include "toolkit/ipc/IPCServer.h"
#include "toolkit/threading/FrameworkHold.h"

#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

#include "ipc/EventLoop.h"
#include "ipc/RawSocket.h"

namespace Toolkit::TestSupport {

/// The "Connect" message with the topic "t".
const std::string c_connect("\x0A\x01\0\0\0t", 6);
/// The "Execute" message with the wide string "a".
const std::string c_executeA("\x01\x01\x08\0\0\0a\0\0\0\0\0\0\0", 14);

/// Fixture for servers, with a temporary home directory. `m_received` collects their messages.
class ServerFixture : public testing::Test {
protected:
    TString<wchar_t> Service() const { return m_directory.File(L"service"); }
    std::filesystem::path Path() const { return m_directory.Path() / "service"; }

    std::unique_ptr<IPCServer> CreateServer() { return CreateServer(Service()); }
    std::unique_ptr<IPCServer> CreateServer(const TString<wchar_t>& service)
    {
        auto server = std::make_unique<IPCServer>(service);
        server->AddListener(CreateCollector(m_received));
        return server;
    }

    std::unique_ptr<IPCServer> RunServer()
    {
        std::unique_ptr<IPCServer> server = CreateServer();
        EXPECT_TRUE(server->Run());
        return server;
    }

    /// Returns a client that has sent its topic and received the reply.
    RawSocket ConnectWithTopic() const
    {
        RawSocket client = RawSocket::ConnectedTo(Path());
        EXPECT_TRUE(client.Send(c_connect));
        EXPECT_EQ(client.Receive(1), "\x0A");
        return client;
    }

    /// Sends a message and waits until the server has delivered it. Returns false on failure.
    bool ServerDelivers()
    {
        const std::size_t before = m_received.All().size();
        return IPCClient::Connect(Service(), L"served") &&
               m_received.Await(before + 1).back() == L"served";
    }

    bool IsSocket() const { return std::filesystem::is_socket(Path()); }

    const TempDir m_directory;
    const TempDir m_homeDirectory;
    const ScopedEnvironment m_home{"HOME", m_homeDirectory.Path()};
    const FrameworkHold m_framework;
    ReceivedMessages m_received;
};

} // namespace Toolkit::TestSupport
