#pragma once

#include "toolkit/core/TString.h"

#include <wx/sckipc.h>

#include <cstddef>
#include <functional>
#include <memory>

namespace Toolkit {

/// Hands a message to the listeners of an `IPCServer`.
using IPCDelivery = std::function<void(const TString<wchar_t>& text)>;

/// The connection on which one message is executed.
class IPCConnectionEventHelper : public wxTCPConnection {
public:
    /// `deliver` must outlive the connection.
    explicit IPCConnectionEventHelper(const IPCDelivery& deliver);

    /// Delivers a message. In the format `wxIPC_UTF8TEXT`, `data` is UTF-8; in every other format,
    /// wide characters. The message ends at a null character or after `size` bytes. Drops a message
    /// that is not valid UTF-8. False if a listener threw; the exception has then been passed to
    /// the application object. Throws `std::bad_alloc`.
    bool OnExecute(const wxString& topic, const void* data, size_t size,
                   wxIPCFormat format) override;

private:
    const IPCDelivery& m_deliver;
};

/// The part of an `IPCServer` that wxWidgets sees.
///
/// wxTCPServer would block the event loop while it waits for a client, and would change the umask
/// of the whole process while it creates its socket file. The library therefore has sockets and
/// sessions of its own.
class IPCInternalServer : public wxTCPServer {
public:
    /// Serves at most `maxSessions` clients at the same time.
    IPCInternalServer(std::size_t maxSessions, IPCDelivery deliver);
    ~IPCInternalServer() override;

    /// Starts listening on the socket file of `service`; does nothing if the server already listens
    /// and the file is still in place. Returns whether the server listens. Throws `std::bad_alloc`.
    bool Create(const wxString& service) override;

    /// Accepts every topic. The caller owns the connection.
    wxConnectionBase* OnAcceptConnection(const wxString& topic) override;

private:
    class Source;

    const std::size_t m_maxSessions;
    const IPCDelivery m_deliver;
    std::unique_ptr<Source> m_source; // null while the server does not listen
};

} // namespace Toolkit
