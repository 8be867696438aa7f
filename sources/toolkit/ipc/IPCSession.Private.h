#pragma once

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/ipc/IPCMessageParser.Private.h"

#include <wx/ipcbase.h>

#include <chrono>
#include <memory>
#include <string_view>

namespace Toolkit {

/// The conversation with one client. Never waits for it.
class IPCSession {
public:
    using Clock = std::chrono::steady_clock;

    /// How long a message may make no progress.
    static constexpr std::chrono::seconds c_patience{2};

    /// Talks through `socket` and asks `server`, which has to outlive it, for a connection.
    IPCSession(Base::FileDescriptor socket, wxServerBase& server);

    /// Reads some of what has come and acts on it; false when the conversation has ended. Not to be
    /// called while the session is busy.
    bool Read();

    /// Whether the program is working on one of its texts, in a loop of its own perhaps.
    bool IsBusy() const { return m_isBusy; }

    /// Whether its socket is not watched meanwhile.
    bool IsSetAside() const { return m_isSetAside; }
    void SetAside(bool isSetAside) { m_isSetAside = isSetAside; }

    /// Whether the client has kept a message waiting for too long.
    bool IsOverdue(Clock::time_point now) const;

private:
    bool Act(std::string_view bytes);
    bool Answer();
    bool Execute();

    Base::FileDescriptor m_socket;
    wxServerBase& m_server;
    IPCMessageParser m_parser;
    wxString m_topic;
    std::unique_ptr<wxConnectionBase> m_connection; // once the topic has come
    Clock::time_point m_lastProgress;
    bool m_isBusy = false;
    bool m_isSetAside = false;
};

} // namespace Toolkit
