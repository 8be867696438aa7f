#include "toolkit/ipc/IPCServer.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/framework/Text.h"
#include "toolkit/ipc/IPCInternalServer.Private.h"
#include "toolkit/ipc/Protocol.Private.h"

#include <new>

namespace Toolkit {
namespace {

TString<wchar_t> MakeDefaultService()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    TString<wchar_t> service;
    if (!paths.IsValid())
        return service;
    const TString<wchar_t> directory = paths->GetTempDir();
    // GetTempDir() ran out of memory. Without this check, the socket file would be in the working
    // directory.
    if (directory.empty())
        throw std::bad_alloc();
    PathManager::AppendPath(service, directory, paths->GetApplicationUniqueName() + L".ipc");
    return service;
}

TString<wchar_t> ResolveService(const TString<wchar_t>& service)
{
    return service.empty() ? MakeDefaultService() : service;
}

} // namespace

IPCServer::IPCServer(const TString<wchar_t>& service)
{
    const bool isComplete = Base::RunsWithoutThrowing([&] {
        m_internalServer = std::make_unique<IPCInternalServer>(
            c_maxSessions, [this](const TString<wchar_t>& text) { SendExecuteEvent(text); });
        m_service = ResolveService(service);
    });
    if (!isComplete)
        m_internalServer.reset();
}

IPCServer::~IPCServer() = default;

TString<wchar_t> IPCServer::GetSocketPath(const TString<wchar_t>& service)
{
    return Base::TryOr(TString<wchar_t>(), [&]() -> TString<wchar_t> {
        return Base::DecodeUtf8(Ipc::MakeSocketPath(ResolveService(service)));
    });
}

bool IPCServer::Run()
{
    return m_internalServer && Base::TryOr(false, [&] {
               return m_internalServer->Create(Framework::ToWxString(m_service));
           });
}

void IPCServer::SendExecuteEvent(const TString<wchar_t>& text)
{
    Notify([&](IPCConnectionEvent& listener) { listener.OnExecute(text); });
}

} // namespace Toolkit
