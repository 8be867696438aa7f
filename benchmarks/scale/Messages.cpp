#include "toolkit/ipc/IPCClient.h"
#include "toolkit/ipc/IPCConnectionEvent.h"
#include "toolkit/ipc/IPCServer.h"
#include "toolkit/threading/FrameworkHold.h"

#include <wx/app.h>
#include <wx/evtloop.h>

#include <cstddef>
#include <memory>
#include <thread>
#include <vector>

#include "scale/Operations.h"

namespace Scale {
namespace {

using namespace Toolkit;
using Text = TString<wchar_t>;

class Counter : public IPCConnectionEvent {
public:
    void OnExecute(const Text& text) override
    {
        m_length += text.size();
        ++m_count;
    }
    int Count() const { return m_count; }
    std::size_t Length() const { return m_length; }

private:
    int m_count = 0;
    std::size_t m_length = 0;
};

class Service {
public:
    Service() : m_counter(new Counter()), m_server(Name())
    {
        m_server.AddListener(m_counter);
        Require(m_server.Run());
    }

    static Text Name() { return ToWide(GetDirectory() / "service"); }

    template <typename IsDone>
    void ServeUntil(IsDone isDone)
    {
        wxConsoleEventLoop loop;
        const wxEventLoopActivator activator(&loop);
        while (!isDone(static_cast<Counter&>(*m_counter)))
            loop.DispatchTimeout(100);
    }

private:
    FrameworkHold m_hold;
    smart_ptr<IPCConnectionEvent> m_counter;
    IPCServer m_server;
};

// Returns a run in which `clients` clients concurrently send one message each.
Run PrepareClients(int clients)
{
    const auto service = std::make_shared<Service>();
    return [clients, service, expected = std::make_shared<int>(0)] {
        std::vector<std::thread> threads;
        for (int client = 0; client < clients; ++client)
            threads.emplace_back([] { IPCClient::Connect(Service::Name(), L"message"); });
        *expected += clients;
        service->ServeUntil([&](const Counter& counter) { return counter.Count() >= *expected; });
        for (std::thread& thread : threads)
            thread.join();
    };
}

Run PrepareMessage(int length)
{
    const auto service = std::make_shared<Service>();
    const auto message = std::make_shared<Text>(MakeWords<wchar_t>(length));
    return [message, service, expected = std::make_shared<std::size_t>(0)] {
        std::thread client([&] { IPCClient::Connect(Service::Name(), *message); });
        *expected += message->size();
        service->ServeUntil([&](const Counter& counter) { return counter.Length() >= *expected; });
        client.join();
    };
}

} // namespace

void AddMessageOperations(Operations& operations)
{
    operations.push_back({"IPCServer, clients", c_clientCounts, PrepareClients});
    operations.push_back({"IPCServer, message length", c_sizes, PrepareMessage});
}

} // namespace Scale
