#include "toolkit/ipc/IPCClient.h"
#include "toolkit/ipc/IPCServer.h"
#include "toolkit/threading/FrameworkHold.h"

#include <benchmark/benchmark.h>
#include <wx/app.h>
#include <wx/sckipc.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace Toolkit;
using Clock = std::chrono::steady_clock;

const std::wstring c_message(100, L'x');
constexpr double c_maxP99Ms = 250;
constexpr int c_slowClientCount = 10;

// Memory shared by a server process and the benchmark.
struct Shared {
    std::atomic<bool> isReady;
    std::atomic<long> messageCount;
};

// A server process. The destructor kills it.
class ServerProcess {
public:
    using Serve = int (*)(const std::string& path, Shared& shared);

    ServerProcess(const std::string& name, Serve serve)
        : m_shared(new (::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE,
                               MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Shared()),
          m_path("/tmp/toolkit-benchmark-" + std::to_string(::getpid()) + "-" + name),
          m_process(::fork())
    {
        if (m_process == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::_exit(serve(m_path, *m_shared));
        }
        while (!m_shared->isReady) {
            if (HasEnded()) {
                std::fprintf(stderr, "the server process at %s has ended\n", m_path.c_str());
                std::exit(1);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    ~ServerProcess()
    {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        ::unlink(m_path.c_str());
    }

    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    const std::string& Path() const { return m_path; }
    std::wstring Service() const { return {m_path.begin(), m_path.end()}; }

    // Waits up to 10 seconds for `expected` correct messages; returns how many have arrived since
    // the last call.
    long WaitForMessages(long expected) const
    {
        const Clock::time_point deadline = Clock::now() + std::chrono::seconds(10);
        while (m_shared->messageCount < expected && Clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return m_shared->messageCount.exchange(0);
    }

private:
    // Leaves the process for the destructor to reap.
    bool HasEnded() const
    {
        siginfo_t end{};
        constexpr int flags = WEXITED | WNOHANG | WNOWAIT;
        return ::waitid(P_PID, static_cast<id_t>(m_process), &end, flags) == 0 && end.si_pid != 0;
    }

    Shared* m_shared;
    std::string m_path;
    pid_t m_process;
};

class Counter : public IPCConnectionEvent {
public:
    explicit Counter(Shared& shared) : m_shared(shared) {}
    void OnExecute(const TString<wchar_t>& text) override
    {
        if (text == c_message)
            ++m_shared.messageCount;
    }

private:
    Shared& m_shared;
};

int ServeToolkit(const std::string& path, Shared& shared)
{
    const FrameworkHold hold;
    IPCServer server(std::wstring(path.begin(), path.end()));
    server.AddListener(smart_ptr<IPCConnectionEvent>(new Counter(shared)));
    shared.isReady = server.Run();
    return shared.isReady ? wxAppConsole::GetInstance()->MainLoop() : 1;
}

class WxServer : public wxTCPServer {
public:
    explicit WxServer(Shared& shared) : m_shared(shared) {}
    wxConnectionBase* OnAcceptConnection(const wxString&) override
    {
        return new Connection(m_shared);
    }

private:
    class Connection : public wxTCPConnection {
    public:
        explicit Connection(Shared& shared) : m_shared(shared) {}
        bool OnExecute(const wxString&, const void* data, size_t, wxIPCFormat) override
        {
            if (c_message == static_cast<const wchar_t*>(data))
                ++m_shared.messageCount;
            return true;
        }

    private:
        Shared& m_shared;
    };

    Shared& m_shared;
};

int ServeWx(const std::string& path, Shared& shared)
{
    const FrameworkHold hold;
    WxServer server(shared);
    shared.isReady = server.Create(wxString(path));
    return shared.isReady ? wxAppConsole::GetInstance()->MainLoop() : 1;
}

// Forks the servers before wxWidgets starts in this process: a child must not inherit its state.
struct Servers {
    ServerProcess toolkit{"toolkit", ServeToolkit};
    ServerProcess wx{"wx", ServeWx};
    const FrameworkHold hold;
};

Servers& GetServers()
{
    static Servers servers;
    return servers;
}

void CheckMessageCount(benchmark::State& state, const ServerProcess& server)
{
    const auto expected = static_cast<long>(state.iterations());
    if (server.WaitForMessages(expected) != expected)
        state.SkipWithError("wrong number of messages");
}

// Connects, sends one message of 100 characters and disconnects.
void BM_IpcText_Toolkit(benchmark::State& state)
{
    const ServerProcess& server = GetServers().toolkit;
    const TString<wchar_t> service = server.Service();
    const TString<wchar_t> text = c_message;
    for (auto _ : state)
        benchmark::DoNotOptimize(IPCClient::Connect(service, text));
    CheckMessageCount(state, server);
}
BENCHMARK(BM_IpcText_Toolkit)->UseRealTime();

void BM_IpcText_wxTCPClient(benchmark::State& state)
{
    const ServerProcess& server = GetServers().wx;
    const wxString path(server.Path());
    const wxString text(c_message);
    for (auto _ : state) {
        wxTCPClient client;
        const std::unique_ptr<wxConnectionBase> connection(
            client.MakeConnection(wxString(), path, text));
        if (connection)
            connection->Execute(text.wc_str());
    }
    CheckMessageCount(state, server);
}
BENCHMARK(BM_IpcText_wxTCPClient)->UseRealTime();

// Connects, sends `bytes` and then nothing more. Returns the open socket.
int ConnectSlowClient(const std::string& path, const std::string& bytes)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    return socket;
}

double ComputeP99(std::vector<double> durations)
{
    const auto p99 = durations.begin() + static_cast<long>(durations.size() * 99 / 100);
    std::nth_element(durations.begin(), p99, durations.end());
    return *p99;
}

// Like BM_IpcText_Toolkit, while ten other clients are silent or have stopped in the middle of a
// message.
void BM_IpcTextBesideSlowClients_Toolkit(benchmark::State& state)
{
    using namespace std::string_literals;
    // Nothing, the beginning of a connect request, and a connect request with the beginning of a
    // message.
    const std::string beginnings[] = {"", "\x0A\x05\0\0\0to"s,
                                      "\x0A\x01\0\0\0t\x01\x01\x08\0\0\0a\0"s};
    const ServerProcess& server = GetServers().toolkit;
    std::vector<int> sockets;
    for (int i = 0; i < c_slowClientCount; ++i)
        sockets.push_back(ConnectSlowClient(server.Path(), beginnings[i % 3]));

    std::vector<double> durations;
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        benchmark::DoNotOptimize(IPCClient::Connect(server.Service(), c_message));
        durations.push_back(
            std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    CheckMessageCount(state, server);
    for (const int socket : sockets)
        ::close(socket);
    const double p99Ms = ComputeP99(durations);
    state.counters["p99_ms"] = p99Ms;
    if (p99Ms > c_maxP99Ms)
        state.SkipWithError("slow clients delay the others");
}
BENCHMARK(BM_IpcTextBesideSlowClients_Toolkit)->Iterations(5000)->UseRealTime();

} // namespace
