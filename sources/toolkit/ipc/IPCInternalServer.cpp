#include "toolkit/base/Utf8.h"
#include "toolkit/framework/Text.h"
#include "toolkit/ipc/IPCInternalServer.Private.h"
#include "toolkit/ipc/Session.Private.h"
#include "toolkit/threading/FrameworkHold.h"

#include <wx/app.h>
#include <wx/event.h>
#include <wx/evtloop.h>
#include <wx/evtloopsrc.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

static_assert(Ipc::c_textFormat == wxIPC_TEXT);

// Calls the program's code as wxWidgets calls event handlers: an exception goes to the application
// object instead of passing through the event loop.
class GuardedCall : public wxEvtHandler {
public:
    explicit GuardedCall(std::function<void()> call) : m_call(std::move(call)) {}

    // Returns false if the call threw.
    bool Run()
    {
        wxThreadEvent event(wxEVT_NULL);
        return SafelyProcessEvent(event);
    }

    bool ProcessEvent(wxEvent&) override
    {
        m_call();
        return true;
    }

private:
    std::function<void()> m_call;
};

bool Decode(std::wstring& text, const void* data, std::size_t size, wxIPCFormat format)
{
    if (format != wxIPC_UTF8TEXT) {
        const wchar_t* const begin = static_cast<const wchar_t*>(data);
        text.assign(begin, std::find(begin, begin + size / sizeof(wchar_t), L'\0'));
        return true;
    }
    const char* const begin = static_cast<const char*>(data);
    const char* const end = std::find(begin, begin + size, '\0');
    return Base::AppendDecodedUtf8(text, begin, static_cast<std::size_t>(end - begin));
}

wxIPCFormat ToFormat(unsigned char value)
{
    return value <= wxIPC_PRIVATE ? static_cast<wxIPCFormat>(value) : wxIPC_PRIVATE;
}

} // namespace

// Registers all sessions as one source of the event loop.
//
// With a source for each session, a session that ends in an event loop run by a listener would
// remove its descriptor while wxWidgets still handles others, which wxWidgets does not support.
class IPCInternalServer::Source : private wxEventLoopSourceHandler {
public:
    Source(std::size_t maxSessions, Ipc::Execute execute)
        : m_sessions(maxSessions, std::move(execute))
    {
    }
    ~Source() override;

    // Must be called only once. False if the socket file or the source cannot be created.
    bool Listen(const std::string& path);

    bool IsReachable() const { return m_sessions.AreReachable(); }

private:
    void OnReadWaiting() override { m_sessions.ServeReadable(); }
    void OnWriteWaiting() override {}
    void OnExceptionWaiting() override {}

    const FrameworkHold m_framework; // first, so that the event loop outlives m_source
    Ipc::Sessions m_sessions;
    std::unique_ptr<wxEventLoopSource> m_source;
};

IPCInternalServer::Source::~Source()
{
    // Leaks the source where it must not be destroyed. Without an application object, wxWidgets has
    // stopped and has already destroyed its part of the source. In a forked child, that part is
    // shared with the parent.
    if (!wxAppConsole::GetInstance() || !m_sessions.BelongToThisProcess())
        static_cast<void>(m_source.release());
}

bool IPCInternalServer::Source::Listen(const std::string& path)
{
    if (!m_sessions.Listen(path))
        return false;
    m_source.reset(
        wxEventLoopBase::AddSourceForFD(m_sessions.Descriptor(), this, wxEVENT_SOURCE_INPUT));
    return m_source != nullptr;
}

IPCConnectionEventHelper::IPCConnectionEventHelper(const IPCDelivery& deliver) : m_deliver(deliver)
{
    // The base class has no socket to disconnect: the library owns it.
    SetConnected(false);
}

bool IPCConnectionEventHelper::OnExecute(const wxString&, const void* data, size_t size,
                                         wxIPCFormat format)
{
    // Outside the guarded call: running out of memory here ends only the session, and is not
    // reported as a listener's exception.
    std::wstring characters;
    if (!Decode(characters, data, size, format))
        return true;
    const TString<wchar_t> text(std::move(characters));
    return GuardedCall([&] { m_deliver(text); }).Run();
}

IPCInternalServer::IPCInternalServer(std::size_t maxSessions, IPCDelivery deliver)
    : m_maxSessions(maxSessions), m_deliver(std::move(deliver))
{
}

IPCInternalServer::~IPCInternalServer() = default;

bool IPCInternalServer::Create(const wxString& service)
{
    if (m_source && m_source->IsReachable())
        return true;
    m_source.reset();
    auto source = std::make_unique<Source>(
        m_maxSessions, [this](const std::vector<char>& data, unsigned char format) {
            const wxString topic; // empty: topics are not stored
            const std::unique_ptr<wxConnectionBase> connection(OnAcceptConnection(topic));
            return connection->OnExecute(topic, data.data(), data.size(), ToFormat(format));
        });
    if (!source->Listen(Ipc::MakeSocketPath(Framework::ToText(service))))
        return false;
    m_source = std::move(source);
    return true;
}

wxConnectionBase* IPCInternalServer::OnAcceptConnection(const wxString&)
{
    return new IPCConnectionEventHelper(m_deliver);
}

} // namespace Toolkit
