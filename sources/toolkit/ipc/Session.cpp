#include "toolkit/base/OutOfMemory.h"
#include "toolkit/ipc/Session.Private.h"

#include <algorithm>
#include <cerrno>
#include <sys/types.h>
#include <utility>

namespace Toolkit::Ipc {
namespace {

using Message = MessageParser::Message;

constexpr std::size_t c_maxBytesPerRead = 65536;

// How many clients are accepted before the connected ones are served again.
constexpr int c_maxAcceptedPerPass = 16;

constexpr unsigned int ToTicks(std::chrono::milliseconds duration)
{
    return static_cast<unsigned int>(duration / Session::c_tick);
}

constexpr unsigned int c_maxSilentTicks = ToTicks(std::chrono::seconds(2));
constexpr unsigned int c_maxMessageTicks = ToTicks(std::chrono::seconds(30));

bool IsOutOfResources(int error)
{
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

} // namespace

Session::Session(Base::FileDescriptor socket, const Execute& execute)
    : m_socket(std::move(socket)), m_execute(execute), m_lastProgress(Clock::now())
{
}

bool Session::Read()
{
    // Reads to the end of a message that has begun: otherwise a shorter message that another client
    // sends later would be complete first.
    do {
        char buffer[c_maxBytesPerRead];
        const ssize_t count = Receive(m_socket, buffer, sizeof buffer);
        if (count < 0)
            return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
        if (count == 0 || !ActOn({buffer, static_cast<std::size_t>(count)}))
            return false;
    } while (m_parser.IsExpectingMore());
    return true;
}

bool Session::ActOn(std::string_view bytes)
{
    m_lastProgress = Clock::now();
    m_silentTicks = 0;
    m_isBusy = true;
    const bool goesOn = ParseAndHandle(bytes);
    m_isBusy = false;
    return goesOn;
}

bool Session::ParseAndHandle(std::string_view bytes)
{
    for (;;) {
        const Message message = m_parser.Parse(bytes);
        if (message == Message::Incomplete)
            return true;
        m_messageTicks = 0;
        if (!Handle(message))
            return false;
    }
}

// Returns false if the session ends.
bool Session::Handle(Message message)
{
    if (message == Message::Topic)
        return Answer();
    if (message == Message::Execute)
        return m_execute(m_parser.TakeData(), m_parser.Format());
    return false; // Disconnect or Broken
}

bool Session::Answer() const
{
    return Send(m_socket, &c_accepted, 1) == 1;
}

void Session::CountTick()
{
    ++m_silentTicks;
    m_messageTicks = m_parser.IsExpectingMore() ? m_messageTicks + 1 : 0;
}

bool Session::IsOverdue() const
{
    return m_parser.IsExpectingMore() &&
           (m_silentTicks > c_maxSilentTicks || m_messageTicks > c_maxMessageTicks);
}

bool Session::IsSilent() const
{
    return m_silentTicks > 1;
}

Sessions::Sessions(std::size_t maxSessions, Execute execute)
    : m_maxSessions(maxSessions), m_execute(std::move(execute))
{
}

bool Sessions::Listen(const std::string& path)
{
    return m_sockets.IsUsable() && m_listener.Listen(path) &&
           m_sockets.Add(m_listener.Socket().Get());
}

void Sessions::ServeReadable()
{
    // After running out of memory, the sockets that are still readable are reported again.
    static_cast<void>(Base::RunsWithoutThrowing([&] {
        for (const int descriptor : m_sockets.PollReadable()) {
            if (descriptor == SocketSet::c_tick)
                OnTick();
            else if (descriptor == m_listener.Socket().Get())
                Accept();
            else
                Serve(descriptor);
        }
    }));
}

void Sessions::Accept()
{
    for (int i = 0; i < c_maxAcceptedPerPass; ++i) {
        if (!AcceptOne())
            return;
    }
}

bool Sessions::AcceptOne()
{
    if (m_sessions.size() >= m_maxSessions) {
        if (!HasWaitingClient(m_listener.Socket()))
            return false;
        if (!MakeRoom()) {
            PauseAccepting();
            return false;
        }
    }
    Base::FileDescriptor socket = AcceptClient(m_listener.Socket());
    // With no descriptors left, accept() fails even if no client is waiting.
    if (!socket.IsOpen() && IsOutOfResources(errno) && HasWaitingClient(m_listener.Socket())) {
        if (MakeRoom())
            socket = AcceptClient(m_listener.Socket());
        // Without a pause, the event loop would report the same client again and again.
        if (!socket.IsOpen())
            PauseAccepting();
    }
    if (!socket.IsOpen())
        return false;
    Open(std::move(socket));
    return true;
}

void Sessions::Open(Base::FileDescriptor socket)
{
    const int descriptor = socket.Get();
    if (!IsPeerOfThisUser(socket) || !m_sockets.Add(descriptor))
        return;
    // Not read yet: the clients whose messages are already waiting come first.
    m_sessions.try_emplace(descriptor, std::move(socket), m_execute);
    StartTicking();
}

// Ends the session whose client has been silent longest; false when none is silent.
bool Sessions::MakeRoom()
{
    for (;;) {
        auto longestSilent = m_sessions.end();
        for (auto session = m_sessions.begin(); session != m_sessions.end(); ++session) {
            const bool mayEnd = session->second.IsSilent() && !session->second.IsBusy();
            if (mayEnd && (longestSilent == m_sessions.end() ||
                           session->second.LastProgress() < longestSilent->second.LastProgress()))
                longestSilent = session;
        }
        if (longestSilent == m_sessions.end())
            return false;
        // Reads first: data may have arrived while the loop was busy.
        const int descriptor = longestSilent->first;
        if (Serve(descriptor) && m_sessions.at(descriptor).IsSilent())
            End(descriptor);
        if (m_sessions.count(descriptor) == 0)
            return true;
    }
}

void Sessions::PauseAccepting()
{
    m_isPaused = m_sockets.Remove(m_listener.Socket().Get());
    StartTicking();
}

void Sessions::ResumeAccepting()
{
    m_isPaused = !m_sockets.Add(m_listener.Socket().Get());
}

// False when the session has ended, now or earlier.
bool Sessions::Serve(int descriptor)
{
    const auto found = m_sessions.find(descriptor);
    if (found == m_sessions.end())
        return false;
    Session& session = found->second;
    if (session.IsBusy()) {
        // A listener runs this loop, which must not spin on data that stays unread until the
        // listener returns.
        session.SetUnwatched(m_sockets.Remove(descriptor));
        return true;
    }
    // Also ends the session if a message does not fit into memory.
    if (!Base::TryOr(false, [&] { return session.Read(); }) ||
        (session.IsUnwatched() && !m_sockets.Add(descriptor))) {
        End(descriptor);
        return false;
    }
    session.SetUnwatched(false);
    return true;
}

void Sessions::End(int descriptor)
{
    m_sockets.Remove(descriptor);
    m_sessions.erase(descriptor);
    if (m_isPaused)
        ResumeAccepting();
}

void Sessions::OnTick()
{
    if (m_isPaused)
        ResumeAccepting();
    CountTickAndEndOverdue();
    if (m_sessions.empty() && !m_isPaused)
        StopTicking();
}

// The clock ticks while there are clients or while accepting is paused.
void Sessions::StartTicking()
{
    if (!m_isTicking)
        m_sockets.SetTicking(static_cast<unsigned int>(Session::c_tick.count()));
    m_isTicking = true;
}

void Sessions::StopTicking()
{
    m_sockets.SetTicking(0);
    m_isTicking = false;
}

// Counts the tick for each session, and ends those that are overdue.
void Sessions::CountTickAndEndOverdue()
{
    std::vector<int> overdue;
    for (auto& [descriptor, session] : m_sessions) {
        if (session.IsBusy())
            continue;
        session.CountTick();
        if (session.IsOverdue())
            overdue.push_back(descriptor);
    }
    for (const int descriptor : overdue) {
        // Reads first: data may have arrived while the loop was busy.
        if (Serve(descriptor) && m_sessions.at(descriptor).IsOverdue())
            End(descriptor);
    }
}

} // namespace Toolkit::Ipc
