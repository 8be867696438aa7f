#include "toolkit/ipc/IPCServer.h"

#include "toolkit/files/PathManager.h"
#include "toolkit/ipc/IPCInternalServer.Private.h"

#include <exception>

namespace Toolkit {
namespace {

TString<wchar_t> DefaultService()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    TString<wchar_t> service;
    if (paths.IsValid())
        PathManager::AppendPath(service, paths->GetTempDir(),
                                paths->GetApplicationUniqueName() + L".ipc");
    return service;
}

} // namespace

IPCServer::IPCServer(const TString<wchar_t>& service)
    : m_internalServer(std::make_unique<IPCInternalServer>(*this)),
      m_service(service.empty() ? DefaultService() : service)
{
}

IPCServer::~IPCServer() = default;

bool IPCServer::Run()
try {
    return m_internalServer->Create(wxString(m_service.data(), m_service.size()));
} catch (const std::exception&) {
    return false;
}

void IPCServer::SendExecuteEvent(const TString<wchar_t>& text)
{
    Notify([&](IPCConnectionEvent& listener) { listener.OnExecute(text); });
}

} // namespace Toolkit
