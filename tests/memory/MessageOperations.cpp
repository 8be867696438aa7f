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

const TString<wchar_t>& Service()
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

void ServerMade(Attempt& attempt)
{
    const TString<wchar_t>& service = Service();
    std::unique_ptr<IPCServer> server;
    bool isRun = false;
    const bool isMade = attempt.Run(Rule::BadAlloc, [&] {
        server = std::make_unique<IPCServer>(service);
        isRun = server->Run();
    });
    if (isMade)
        attempt.Expect(isRun, !isRun);
    server.reset();
    IPCServer again(service);
    attempt.Always(again.Run());
}

void ServerRun(Attempt& attempt)
{
    IPCServer server(Service());
    bool isRun = false;
    attempt.Run([&] { isRun = server.Run(); });
    attempt.Expect(isRun, !isRun);
    attempt.Always(isRun || server.Run());
}

void ServerEnded(Attempt& attempt)
{
    auto server = std::make_unique<IPCServer>(Service());
    server->Run();
    attempt.Run([&] { server.reset(); });
    attempt.Always(!attempt.HasFailed());
}

void TextDelivered(Attempt& attempt)
{
    IPCServer server(Service());
    int calls = 0;
    const smart_ptr<IPCConnectionEvent> listener(new Listener(calls));
    server.AddListener(listener);
    attempt.Run([&] { server.SendExecuteEvent(c_text); });
    attempt.Always(!attempt.HasFailed() && calls == 1);
}

void ClientWithoutServer(Attempt& attempt)
{
    const TString<wchar_t>& service = Service();
    bool isSent = true;
    attempt.Run([&] { isSent = IPCClient::Connect(service, c_text); });
    attempt.Always(!isSent);
}

void ServiceAsked(Attempt& attempt)
{
    const TString<wchar_t>& service = Service();
    bool isServed = true;
    attempt.Run([&] { isServed = IPCClient::IsServed(service); });
    attempt.Always(!isServed);
}

void SocketPath(Attempt& attempt)
{
    const TString<wchar_t>& service = Service();
    TString<wchar_t> path;
    attempt.Run([&] { path = IPCServer::GetSocketPath(service); });
    attempt.Expect(!path.empty(), path.empty());
}

void OwnSocketPath(Attempt& attempt)
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
        {"Toolkit::IPCServer::IPCServer", ServerMade},
        {"Toolkit::IPCServer::~IPCServer", ServerEnded},
        {"Toolkit::IPCServer::Run", ServerRun},
        {"Toolkit::IPCServer::SendExecuteEvent", TextDelivered},
        {"Toolkit::IPCServer::GetSocketPath", SocketPath},
        {"Toolkit::IPCServer::GetSocketPath", OwnSocketPath},
        {"Toolkit::IPCConnectionEvent::~IPCConnectionEvent", TextDelivered},
        {"Toolkit::IPCClient::Connect", ClientWithoutServer},
        {"Toolkit::IPCClient::IsServed", ServiceAsked},
    };
}

} // namespace Toolkit::TestSupport
