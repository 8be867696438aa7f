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
    /// `deliver` has to outlive the connection.
    explicit IPCConnectionEventHelper(const IPCDelivery& deliver);

    /// Data in the format `wxIPC_UTF8TEXT` are UTF-8, in every other format wide characters. They
    /// end at a null character or with `size`; invalid UTF-8 is dropped. False when a listener
    /// threw, which has been reported to the application object. Throws `std::bad_alloc`.
    bool OnExecute(const wxString& topic, const void* data, size_t size,
                   wxIPCFormat format) override;

private:
    const IPCDelivery& m_deliver;
};

/// The part of an `IPCServer` that wxWidgets sees.
///
/// wxTCPServer would wait for each client in the event loop, and would let every user connect for a
/// moment: the sockets and the sessions on them are the library's own.
class IPCInternalServer : public wxTCPServer {
public:
    /// Serves `mostSessions` clients at once.
    IPCInternalServer(std::size_t mostSessions, IPCDelivery deliver);
    ~IPCInternalServer() override;

    /// Listens under the name `service`. Throws `std::bad_alloc`.
    bool Create(const wxString& service) override;

    /// Accepts every topic.
    wxConnectionBase* OnAcceptConnection(const wxString& topic) override;

private:
    class Source;

    const std::size_t m_mostSessions;
    const IPCDelivery m_deliver;
    std::unique_ptr<Source> m_source; // while it listens
};

} // namespace Toolkit
