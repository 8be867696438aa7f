#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What clients and servers agree on: the socket file of a service, and the bytes that
/// wxWidgets 3.2 sends between its own clients and servers.
///
/// The client sends Connect, a size and the topic in UTF-8. The server answers Connect. The client
/// sends Execute, a format of `wxIPCFormat`, a size and the data, as often as it likes, and
/// Disconnect at the end. A size has four bytes, the least significant first.
namespace Toolkit::Ipc {

/// The server's answer to a topic.
constexpr char c_accepted = 10;

/// The format of wide characters that end with a null character: `wxIPC_TEXT`.
constexpr unsigned char c_textFormat = 1;

/// The path of the socket file that `service` names, at most as long as a socket address allows.
/// Empty when the name is no service.
std::string MakeSocketPath(const std::wstring& service);

/// Connect with `topic`, in which U+FFFD replaces what has no UTF-8 form; empty when the topic is
/// longer than 16 MiB.
std::string MakeConnectRequest(std::wstring_view topic);

/// Execute with `text`, and the Disconnect that follows it.
std::string MakeExecuteRequest(std::wstring_view text);

/// Assembles a client's messages from the pieces in which they arrive. Memory grows with what has
/// arrived, not with what is announced; topics are counted and dropped.
class MessageParser {
public:
    enum class Message { Incomplete, Topic, Execute, Disconnect, Broken };

    /// Takes bytes from the front of `bytes` until a message is complete or none are left. Not
    /// called again after a broken message.
    Message Take(std::string_view& bytes);

    /// Whether the client still has to send the rest of a message, or its topic.
    bool IsExpecting() const { return m_isTopicMissing || !m_header.empty(); }

    /// Moves out the data of the Execute that Take() completed. Aligned for every type.
    std::vector<char> TakeData();

    /// The format of that data.
    unsigned char Format() const { return m_format; }

private:
    Message TakeHeader(std::string_view& bytes);
    Message TakePayload(std::string_view& bytes);
    std::size_t HeaderLength() const;
    void Store(std::string_view bytes);
    Message Complete();

    bool m_isTopicMissing = true;
    std::string m_header; // of the message that has begun
    bool m_isHeaderComplete = false;
    std::size_t m_missing = 0; // bytes of topic or data that have not arrived
    std::vector<char> m_data;
    unsigned char m_format = 0;
};

} // namespace Toolkit::Ipc
