#include "toolkit/ipc/IPCSessions.Private.h"
#include "toolkit/ipc/LocalSocket.Private.h"

#include <wx/app.h>

#include <cerrno>
#include <exception>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

constexpr unsigned int c_tickMs = 250;

// So many clients are accepted before those that wait are served.
constexpr int c_mostAcceptedAtOnce = 16;

// A client for whose text the memory does not suffice loses its connection.
bool Read(IPCSession& session)
{
    try {
        return session.Read();
    } catch (const std::exception&) {
        return false;
    }
}

bool IsOutOfResources(int error)
{
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

} // namespace

IPCSessions::IPCSessions(wxServerBase& server) : m_server(server) {}

IPCSessions::~IPCSessions()
{
    // Without the application object the framework has gone, and its part of the source with it; in
    // a child process that part is shared with the parent.
    if (!wxAppConsole::GetInstance() || !m_listener.IsOfThisProcess())
        static_cast<void>(m_source.release());
}

bool IPCSessions::Listen(const std::string& path)
{
    if (!wxAppConsole::GetInstance() || !m_sockets.IsUsable() || !m_listener.Listen(path) ||
        !m_sockets.Add(m_listener.Socket().Get()))
        return false;
    m_source.reset(wxEventLoopBase::AddSourceForFD(m_sockets.Get(), this, wxEVENT_SOURCE_INPUT));
    return m_source != nullptr;
}

void IPCSessions::OnReadWaiting()
{
    try {
        for (const int descriptor : m_sockets.TakeReadable()) {
            if (descriptor == SocketSet::c_tick)
                OnTick();
            else if (descriptor == m_listener.Socket().Get())
                Accept();
            else
                Serve(descriptor);
        }
    } catch (const std::exception&) {
        // Memory ran out: what is still readable is reported again.
    }
}

void IPCSessions::Accept()
{
    for (int i = 0; i < c_mostAcceptedAtOnce; ++i) {
        if (!AcceptOne())
            return;
    }
}

bool IPCSessions::AcceptOne()
{
    Base::FileDescriptor socket = LocalSocket::Accept(m_listener.Socket());
    if (!socket.IsOpen()) {
        // The loop would report the same client again and again.
        if (IsOutOfResources(errno))
            PauseAccepting();
        return false;
    }
    const int descriptor = socket.Get();
    if (!LocalSocket::IsPeerOfThisUser(socket) || !m_sockets.Add(descriptor))
        return true;
    m_sessions.try_emplace(descriptor, std::move(socket), m_server);
    StartTicking();
    // A client sends its topic at once.
    Serve(descriptor);
    return true;
}

void IPCSessions::PauseAccepting()
{
    m_isPaused = m_sockets.Remove(m_listener.Socket().Get());
    StartTicking();
}

void IPCSessions::ResumeAccepting()
{
    m_isPaused = !m_sockets.Add(m_listener.Socket().Get());
}

// True when the session is still there.
bool IPCSessions::Serve(int descriptor)
{
    const auto found = m_sessions.find(descriptor);
    if (found == m_sessions.end())
        return false;
    IPCSession& session = found->second;
    if (session.IsBusy()) {
        // A loop inside of a listener: it need not spin about what has to wait for its end.
        session.SetAside(m_sockets.Remove(descriptor));
        return true;
    }
    if (!Read(session) || (session.IsSetAside() && !m_sockets.Add(descriptor))) {
        End(descriptor);
        return false;
    }
    session.SetAside(false);
    return true;
}

void IPCSessions::End(int descriptor)
{
    m_sockets.Remove(descriptor);
    m_sessions.erase(descriptor);
}

void IPCSessions::OnTick()
{
    if (m_isPaused)
        ResumeAccepting();
    EndOverdue();
    if (m_sessions.empty() && !m_isPaused)
        StopTicking();
}

// The clock ticks as long as there is somebody to look after.
void IPCSessions::StartTicking()
{
    if (!m_isTicking)
        m_sockets.SetTicking(c_tickMs);
    m_isTicking = true;
}

void IPCSessions::StopTicking()
{
    m_sockets.SetTicking(0);
    m_isTicking = false;
}

void IPCSessions::EndOverdue()
{
    const IPCSession::Clock::time_point now = IPCSession::Clock::now();
    std::vector<int> overdue;
    for (const auto& [descriptor, session] : m_sessions) {
        if (!session.IsBusy() && session.IsOverdue(now))
            overdue.push_back(descriptor);
    }
    for (const int descriptor : overdue) {
        // What has come while the loop was busy with something else counts as progress.
        if (Serve(descriptor) && m_sessions.at(descriptor).IsOverdue(now))
            End(descriptor);
    }
}

} // namespace Toolkit
