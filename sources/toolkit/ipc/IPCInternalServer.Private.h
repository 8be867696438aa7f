#pragma once

#include <wx/sckipc.h>

#include <memory>

namespace Toolkit {

class IPCServer;
class IPCSessions;

/// The framework's view of an `IPCServer`.
///
/// The base class would wait for each client in the event loop, and its socket is lent to every
/// user for a moment: the socket and the sessions on it are the library's own.
class IPCInternalServer : public wxTCPServer {
public:
    explicit IPCInternalServer(IPCServer& server);
    ~IPCInternalServer() override;

    /// Listens under the name `service`.
    bool Create(const wxString& service) override;

    /// Accepts every topic.
    wxConnectionBase* OnAcceptConnection(const wxString& topic) override;

private:
    IPCServer& m_server;
    std::unique_ptr<IPCSessions> m_sessions;
};

} // namespace Toolkit
