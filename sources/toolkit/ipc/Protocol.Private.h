#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What clients and servers agree on: the socket file of a service, and the bytes that
/// wxWidgets 3.2 sends between its own clients and servers.
///
/// The client sends Connect, a size and the topic in UTF-8. The server answers Connect. The client
/// sends Execute, a `wxIPCFormat`, a size and the data, any number of times, and finally
/// Disconnect. Sizes are 32-bit little-endian numbers.
namespace Toolkit::Ipc {

/// The server's answer when it accepts a topic.
constexpr char c_accepted = 10;

/// The format of null-terminated wide strings: `wxIPC_TEXT`.
constexpr unsigned char c_textFormat = 1;

/// Returns the path of the socket file of `service`, shortened to fit into a socket address. Empty
/// when `service` is empty or a number, contains a null character, or cannot be encoded as UTF-8.
std::string MakeSocketPath(const std::wstring& service);

/// Encodes Connect with `topic`, in which U+FFFD replaces characters that UTF-8 cannot encode.
/// Empty when the topic is longer than 16 MiB in UTF-8.
std::string MakeConnectRequest(std::wstring_view topic);

/// Encodes Execute with `text`, followed by Disconnect.
std::string MakeExecuteRequest(std::wstring_view text);

/// Assembles a client's messages from the chunks in which they arrive. Allocates memory for the
/// data that has arrived, not for the announced size. Counts the bytes of a topic, but does not
/// store them.
class MessageParser {
public:
    enum class Message { Incomplete, Topic, Execute, Disconnect, Broken };

    /// Removes bytes from the front of `bytes` until a message is complete or broken, or `bytes` is
    /// empty. Throws `std::bad_alloc`. Must not be called again after `Disconnect` or `Broken`.
    Message Parse(std::string_view& bytes);

    /// Whether the client still has to send the rest of a message, or its topic.
    bool IsExpectingMore() const { return m_isTopicMissing || !m_header.empty(); }

    /// Moves out the data of the Execute message that Parse() completed. Must be called before the
    /// next Parse(), which would append to the data. The data is aligned for every fundamental
    /// type.
    std::vector<char> TakeData();

    /// The format of the data that TakeData() moves out.
    unsigned char Format() const { return m_format; }

private:
    Message ParseHeader(std::string_view& bytes);
    Message ParsePayload(std::string_view& bytes);
    std::size_t HeaderLength() const;
    void Store(std::string_view bytes);
    Message Complete();

    bool m_isTopicMissing = true;
    std::string m_header; // of the message that is arriving
    bool m_isHeaderComplete = false;
    std::size_t m_missing = 0; // bytes of the topic or the data that have not arrived
    std::vector<char> m_data;
    unsigned char m_format = 0;
};

} // namespace Toolkit::Ipc
