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

    /// Delivers a message. Data in the format `wxIPC_UTF8TEXT` is UTF-8, and in every other format
    /// wide characters. It ends at a null character or after `size` bytes. Drops a message that is
    /// not valid UTF-8. False when a listener threw; the exception has then been reported to the
    /// application object. Throws `std::bad_alloc`.
    bool OnExecute(const wxString& topic, const void* data, size_t size,
                   wxIPCFormat format) override;

private:
    const IPCDelivery& m_deliver;
};

/// The part of an `IPCServer` that wxWidgets sees.
///
/// wxTCPServer would block the event loop while it waits for a client, and would let every user
/// connect for a moment. The library therefore has sockets and sessions of its own.
class IPCInternalServer : public wxTCPServer {
public:
    /// Serves at most `maxSessions` clients at once.
    IPCInternalServer(std::size_t maxSessions, IPCDelivery deliver);
    ~IPCInternalServer() override;

    /// Listens on the socket of `service`; true at once if it already does. Throws
    /// `std::bad_alloc`.
    bool Create(const wxString& service) override;

    /// Accepts every topic.
    wxConnectionBase* OnAcceptConnection(const wxString& topic) override;

private:
    class Source;

    const std::size_t m_maxSessions;
    const IPCDelivery m_deliver;
    std::unique_ptr<Source> m_source; // null while it does not listen
};

} // namespace Toolkit
