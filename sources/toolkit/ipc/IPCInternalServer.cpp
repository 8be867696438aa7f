#include "toolkit/ipc/IPCConnectionEventHelper.Private.h"
#include "toolkit/ipc/IPCInternalServer.Private.h"
#include "toolkit/ipc/IPCServicePath.Private.h"
#include "toolkit/ipc/IPCSessions.Private.h"

#include <exception>

namespace Toolkit {

IPCInternalServer::IPCInternalServer(IPCServer& server) : m_server(server) {}

IPCInternalServer::~IPCInternalServer() = default;

bool IPCInternalServer::Create(const wxString& service)
{
    if (m_sessions && m_sessions->AreReachable())
        return true;
    m_sessions.reset();
    try {
        auto sessions = std::make_unique<IPCSessions>(*this);
        if (!sessions->Listen(IPCServicePath(service.ToStdWstring())))
            return false;
        m_sessions = std::move(sessions);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

wxConnectionBase* IPCInternalServer::OnAcceptConnection(const wxString&)
{
    return new IPCConnectionEventHelper(m_server);
}

} // namespace Toolkit
