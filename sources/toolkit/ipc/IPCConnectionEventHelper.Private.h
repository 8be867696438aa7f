#pragma once

#include <wx/sckipc.h>

namespace Toolkit {

class IPCServer;

/// One connection of a client: hands the texts that it executes to the server's listeners.
class IPCConnectionEventHelper : public wxTCPConnection {
public:
    explicit IPCConnectionEventHelper(IPCServer& server);

    /// Data in the format `wxIPC_UTF8TEXT` is UTF-8; in every other format it is wide characters.
    /// Both end at their terminating zero or with `size`. False when UTF-8 is not valid.
    bool OnExecute(const wxString& topic, const void* data, size_t size,
                   wxIPCFormat format) override;

private:
    IPCServer& m_server;
};

} // namespace Toolkit
