#include "toolkit/files/PathManager.h"
#include "toolkit/ipc/IPCClient.h"
#include "toolkit/ipc/IPCServer.h"
#include "toolkit/threading/FrameworkHold.h"

#include "support/TempDir.h"

#include <memory>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

const TString<wchar_t> c_text = L"a text that is too long for the string itself";

const TString<wchar_t>& GetService()
{
    static const FrameworkHold hold;
    static const TempDir directory;
    static const TString<wchar_t> service = directory.File(L"a service with a name");
    return service;
}

class Listener : public IPCConnectionEvent {
public:
    explicit Listener(int& calls) : m_calls(calls) {}
    void OnExecute(const TString<wchar_t>&) override { ++m_calls; }

private:
    int& m_calls;
};

void ConstructsServer(Attempt& attempt)
{
    const TString<wchar_t>& service = GetService();
    std::unique_ptr<IPCServer> server;
    bool isRunning = false;
    const bool isCreated = attempt.Run(Rule::BadAlloc, [&] {
        server = std::make_unique<IPCServer>(service);
        isRunning = server->Run();
    });
    if (isCreated)
        attempt.Expect(isRunning, !isRunning);
    server.reset();
    IPCServer again(service);
    attempt.ExpectAlways(again.Run());
}

void RunsServer(Attempt& attempt)
{
    IPCServer server(GetService());
    bool isRunning = false;
    attempt.Run([&] { isRunning = server.Run(); });
    attempt.Expect(isRunning, !isRunning);
    attempt.ExpectAlways(isRunning || server.Run());
}

void DestroysServer(Attempt& attempt)
{
    auto server = std::make_unique<IPCServer>(GetService());
    server->Run();
    attempt.Run([&] { server.reset(); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

void DeliversMessage(Attempt& attempt)
{
    IPCServer server(GetService());
    int calls = 0;
    const smart_ptr<IPCConnectionEvent> listener(new Listener(calls));
    server.AddListener(listener);
    attempt.Run([&] { server.SendExecuteEvent(c_text); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && calls == 1);
}

void ConnectsWithoutServer(Attempt& attempt)
{
    const TString<wchar_t>& service = GetService();
    bool isSent = true;
    attempt.Run([&] { isSent = IPCClient::Connect(service, c_text); });
    attempt.ExpectAlways(!isSent);
}

void ChecksService(Attempt& attempt)
{
    const TString<wchar_t>& service = GetService();
    bool isServed = true;
    attempt.Run([&] { isServed = IPCClient::IsServed(service); });
    attempt.ExpectAlways(!isServed);
}

void GetsSocketPath(Attempt& attempt)
{
    const TString<wchar_t>& service = GetService();
    TString<wchar_t> path;
    attempt.Run([&] { path = IPCServer::GetSocketPath(service); });
    attempt.Expect(!path.empty(), path.empty());
}

void GetsDefaultSocketPath(Attempt& attempt)
{
    PathManager::CreateInstance();
    TString<wchar_t> path;
    attempt.Run([&] { path = IPCServer::GetSocketPath(L""); });
    attempt.Expect(path.find(L"/tmp/") == 0, path.empty());
}

} // namespace

std::vector<Operation> MessageOperations()
{
    return {
        {"Toolkit::IPCServer::IPCServer", ConstructsServer},
        {"Toolkit::IPCServer::~IPCServer", DestroysServer},
        {"Toolkit::IPCServer::Run", RunsServer},
        {"Toolkit::IPCServer::SendExecuteEvent", DeliversMessage},
        {"Toolkit::IPCServer::GetSocketPath", GetsSocketPath},
        {"Toolkit::IPCServer::GetSocketPath", GetsDefaultSocketPath},
        {"Toolkit::IPCConnectionEvent::~IPCConnectionEvent", DeliversMessage},
        {"Toolkit::IPCClient::Connect", ConnectsWithoutServer},
        {"Toolkit::IPCClient::IsServed", ChecksService},
    };
}

} // namespace Toolkit::TestSupport
