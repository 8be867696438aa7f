#include "toolkit/base/Utf8.h"
#include "toolkit/ipc/IPCSession.Private.h"
#include "toolkit/ipc/IPCWire.Private.h"
#include "toolkit/ipc/LocalSocket.Private.h"

#include <wx/event.h>

#include <cerrno>
#include <functional>
#include <utility>

namespace Toolkit {
namespace {

using Message = IPCMessageParser::Message;

constexpr std::size_t c_mostAtOnce = 65536;

// Calls code of the program the way the framework calls its event handlers: what that code throws
// is handed to the application object instead of passing through the event loop's own code.
class GuardedCall : public wxEvtHandler {
public:
    explicit GuardedCall(std::function<void()> call) : m_call(std::move(call)) {}

    /// False when the code has thrown.
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

wxIPCFormat FormatOf(unsigned char value)
{
    return value <= wxIPC_PRIVATE ? static_cast<wxIPCFormat>(value) : wxIPC_PRIVATE;
}

// Empty for a topic that is not valid, as with the framework.
wxString TopicOf(const std::vector<char>& bytes)
{
    std::wstring topic;
    Base::AppendDecodedUtf8(topic, bytes.data(), bytes.size());
    return topic;
}

} // namespace

IPCSession::IPCSession(Base::FileDescriptor socket, wxServerBase& server)
    : m_socket(std::move(socket)), m_server(server), m_lastProgress(Clock::now())
{
}

bool IPCSession::IsOverdue(Clock::time_point now) const
{
    return m_parser.IsExpecting() && now - m_lastProgress > c_patience;
}

bool IPCSession::Read()
{
    char buffer[c_mostAtOnce];
    const ssize_t count = LocalSocket::Receive(m_socket, buffer, sizeof buffer);
    if (count < 0)
        return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
    if (count == 0)
        return false;
    m_lastProgress = Clock::now();
    m_isBusy = true;
    const bool goesOn = Act({buffer, static_cast<std::size_t>(count)});
    m_isBusy = false;
    return goesOn;
}

bool IPCSession::Act(std::string_view bytes)
{
    for (;;) {
        switch (m_parser.Take(bytes)) {
        case Message::Incomplete:
            return true;
        case Message::Topic:
            if (!Answer())
                return false;
            break;
        case Message::Execute:
            if (!Execute())
                return false;
            break;
        default:
            return false;
        }
    }
}

bool IPCSession::Answer()
{
    m_topic = TopicOf(m_parser.Payload());
    m_connection.reset(m_server.OnAcceptConnection(m_topic));
    return m_connection && LocalSocket::Send(m_socket, &IPCWire::c_connect, 1) == 1;
}

// A client whose text made the program throw has its connection ended.
bool IPCSession::Execute()
{
    GuardedCall call([this] {
        const std::vector<char>& data = m_parser.Payload();
        m_connection->OnExecute(m_topic, data.data(), data.size(), FormatOf(m_parser.Format()));
    });
    return call.Run();
}

} // namespace Toolkit
