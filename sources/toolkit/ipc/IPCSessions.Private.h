#pragma once

#include "toolkit/ipc/IPCSession.Private.h"
#include "toolkit/ipc/SocketFile.Private.h"
#include "toolkit/ipc/SocketSet.Private.h"
#include "toolkit/threading/FrameworkHold.h"

#include <wx/evtloop.h>
#include <wx/evtloopsrc.h>

#include <map>
#include <memory>
#include <string>

namespace Toolkit {

/// Listens for clients and serves all of them from the framework's event loop.
///
/// The loop knows one descriptor, the set's: the framework must not lose a descriptor while it
/// works on others, which would happen whenever a session ends in a loop inside of a listener.
class IPCSessions : private wxEventLoopSourceHandler {
public:
    /// Asks `server`, which has to outlive it, for the connections.
    explicit IPCSessions(wxServerBase& server);
    ~IPCSessions() override;

    /// Begins to listen, once; false when the file `path` cannot be made.
    bool Listen(const std::string& path);

    /// Whether clients that look for the file find this server.
    bool AreReachable() const { return m_listener.IsInPlace(); }

private:
    void OnReadWaiting() override;
    void OnWriteWaiting() override {}
    void OnExceptionWaiting() override {}

    void Accept();
    bool AcceptOne();
    void PauseAccepting();
    void ResumeAccepting();
    bool Serve(int descriptor);
    void End(int descriptor);
    void OnTick();
    void EndOverdue();
    void StartTicking();
    void StopTicking();

    const FrameworkHold m_framework; // first: the event loop outlives what is registered with it
    wxServerBase& m_server;
    SocketFile m_listener;
    SocketSet m_sockets;
    std::map<int, IPCSession> m_sessions; // by descriptor
    bool m_isPaused = false;              // accepting, until there are descriptors again
    bool m_isTicking = false;
    std::unique_ptr<wxEventLoopSource> m_source;
};

} // namespace Toolkit
