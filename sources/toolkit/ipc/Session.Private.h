#pragma once

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/ipc/Protocol.Private.h"
#include "toolkit/ipc/Socket.Private.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Toolkit::Ipc {

/// Handles one message, given as data and format. May run an event loop. False ends the session.
using Execute = std::function<bool(const std::vector<char>& data, unsigned char format)>;

/// The conversation with one client. Never waits for the client.
class Session {
public:
    using Clock = std::chrono::steady_clock;

    /// The unit of time limits. The loop that serves the session counts the ticks. The time that
    /// the loop spends elsewhere counts as one tick at most, because the client cannot
    /// make progress during that time.
    static constexpr std::chrono::milliseconds c_tick{250};

    /// Talks to the client on `socket` and calls `execute` with each message. `execute` must
    /// outlive the session.
    Session(Base::FileDescriptor socket, const Execute& execute);

    /// Reads what has arrived, up to the end of a message, and acts on it; false when the session
    /// has ended. Must not be called while the session is busy, or after an exception, such as
    /// `std::bad_alloc`.
    bool Read();

    /// Whether the program is handling a message of this session, perhaps in an event loop of its
    /// own.
    bool IsBusy() const { return m_isBusy; }

    /// Whether the caller has stopped watching the socket, because data arrived while the session
    /// was busy.
    bool IsUnwatched() const { return m_isUnwatched; }
    void SetUnwatched(bool isUnwatched) { m_isUnwatched = isUnwatched; }

    /// Called at each tick while the session is not busy.
    void CountTick();

    /// Whether a message has made no progress for 2 seconds, or is not complete after 30 seconds.
    /// The topic counts as a message that begins with the connection.
    bool IsOverdue() const;

    /// Whether nothing has arrived for two ticks, so that the session may be ended to make room for
    /// another.
    bool IsSilent() const;

    /// When the last bytes arrived.
    Clock::time_point LastProgress() const { return m_lastProgress; }

private:
    bool ActOn(std::string_view bytes);
    bool ParseAndHandle(std::string_view bytes);
    bool Handle(MessageParser::Message message);
    bool Answer() const;

    Base::FileDescriptor m_socket;
    const Execute& m_execute;
    MessageParser m_parser;
    Clock::time_point m_lastProgress;
    unsigned int m_silentTicks = 0;
    unsigned int m_messageTicks = 0; // since the message began
    bool m_isBusy = false;
    bool m_isUnwatched = false;
};

/// Listens for clients and serves all of them. Independent of the event loop: the caller calls
/// ServeReadable() whenever Descriptor() is readable. Calls may nest, because `execute` may run
/// an event loop.
class Sessions {
public:
    /// Serves at most `maxSessions` clients at the same time.
    Sessions(std::size_t maxSessions, Execute execute);

    /// Starts listening; false on failure, for example if `path` cannot be created. Must be called
    /// only once.
    bool Listen(const std::string& path);

    /// Whether clients that connect to the socket file reach this server.
    bool AreReachable() const { return m_listener.IsInPlace(); }

    /// False in a forked child.
    bool BelongToThisProcess() const { return m_listener.BelongsToThisProcess(); }

    /// Readable when there is something to do.
    int Descriptor() const { return m_sockets.Get(); }

    /// Accepts clients, serves those whose data has arrived, and ends overdue sessions. Throws no
    /// standard exception: a client whose message does not fit into memory is disconnected.
    void ServeReadable();

private:
    void Accept();
    bool AcceptOne();
    void Open(Base::FileDescriptor socket);
    bool MakeRoom();
    void PauseAccepting();
    void ResumeAccepting();
    bool Serve(int descriptor);
    void End(int descriptor);
    void OnTick();
    void CountTickAndEndOverdue();
    void StartTicking();
    void StopTicking();

    const std::size_t m_maxSessions;
    const Execute m_execute;
    SocketFile m_listener;
    SocketSet m_sockets;
    std::map<int, Session> m_sessions; // by descriptor
    bool m_isPaused = false;           // no clients are accepted until there is room
    bool m_isTicking = false;
};

} // namespace Toolkit::Ipc
