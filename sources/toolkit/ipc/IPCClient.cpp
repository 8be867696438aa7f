#include "toolkit/ipc/IPCClient.h"

#include "toolkit/base/Utf8.h"
#include "toolkit/ipc/IPCServicePath.Private.h"
#include "toolkit/ipc/IPCWire.Private.h"
#include "toolkit/ipc/LocalSocket.Private.h"

#include <wx/ipcbase.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cwchar>
#include <exception>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>

namespace Toolkit {
namespace {

using Clock = std::chrono::steady_clock;

// A connection to a server on which everything has to be done before one deadline.
//
// The framework's own client works on the main thread only, and waits for an answer for ever.
class Conversation {
public:
    explicit Conversation(Clock::time_point deadline) : m_deadline(deadline) {}

    bool Open(const std::string& path);
    bool Send(std::string_view bytes) const;
    bool Receive(char& byte) const;

private:
    std::chrono::milliseconds TimeLeft() const;
    bool Wait(short event) const;

    Base::FileDescriptor m_socket;
    Clock::time_point m_deadline;
};

std::chrono::milliseconds Conversation::TimeLeft() const
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_deadline - Clock::now());
    return std::max(left, std::chrono::milliseconds(0));
}

bool Conversation::Open(const std::string& path)
{
    m_socket = LocalSocket::Create();
    if (!m_socket.IsOpen())
        return false;
    do {
        // A server with a full queue makes a client wait, which only this limit ends.
        const auto left = std::max(TimeLeft(), std::chrono::milliseconds(1));
        const timeval timeout{left.count() / 1000, left.count() % 1000 * 1000};
        if (::setsockopt(m_socket.Get(), SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout) != 0)
            return false;
        if (LocalSocket::Connect(m_socket, path))
            return LocalSocket::IsPeerOfThisUser(m_socket);
    } while (errno == EINTR);
    return false;
}

bool Conversation::Send(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t count = LocalSocket::Send(m_socket, bytes.data(), bytes.size());
        if (count >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR && !((errno == EAGAIN || errno == EWOULDBLOCK) && Wait(POLLOUT)))
            return false;
    }
    return true;
}

bool Conversation::Receive(char& byte) const
{
    while (Wait(POLLIN)) {
        const ssize_t count = LocalSocket::Receive(m_socket, &byte, 1);
        if (count >= 0)
            return count == 1;
        if (errno != EINTR && errno != EAGAIN && errno != EWOULDBLOCK)
            return false;
    }
    return false;
}

// False when the deadline has passed.
bool Conversation::Wait(short event) const
{
    pollfd waiting{m_socket.Get(), event, 0};
    int ready = 0;
    do {
        ready = ::poll(&waiting, 1, static_cast<int>(TimeLeft().count()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

std::string ConnectRequest(const std::string& topic)
{
    std::string bytes(1, IPCWire::c_connect);
    IPCWire::AppendSize(bytes, topic.size());
    return bytes + topic;
}

// `text` and its terminator as data, and the end of the conversation behind it.
std::string ExecuteRequest(const wchar_t* text, std::size_t length)
{
    const std::size_t size = (length + 1) * sizeof(wchar_t);
    std::string bytes;
    bytes.reserve(1 + 1 + IPCWire::c_sizeLength + size + 1);
    bytes.push_back(IPCWire::c_execute);
    bytes.push_back(static_cast<char>(wxIPC_TEXT));
    IPCWire::AppendSize(bytes, size);
    bytes.append(reinterpret_cast<const char*>(text), size);
    bytes.push_back(IPCWire::c_disconnect);
    return bytes;
}

bool Deliver(const TString<wchar_t>& service, const TString<wchar_t>& text)
{
    const Clock::time_point deadline =
        Clock::now() + std::chrono::milliseconds(IPCClient::c_timeoutMs);
    const std::string path = IPCServicePath(service);
    const std::size_t length = std::wcslen(text.c_str());
    std::string topic;
    if (path.empty() || length > IPCWire::c_longestTopic ||
        !Base::AppendEncodedUtf8(topic, text.data(), length) ||
        topic.size() > IPCWire::c_longestTopic)
        return false;

    Conversation conversation(deadline);
    char answer = 0;
    return conversation.Open(path) && conversation.Send(ConnectRequest(topic)) &&
           conversation.Receive(answer) && answer == IPCWire::c_connect &&
           conversation.Send(ExecuteRequest(text.c_str(), length));
}

} // namespace

bool IPCClient::Connect(const TString<wchar_t>& service, const TString<wchar_t>& text)
{
    try {
        return Deliver(service, text);
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace Toolkit
