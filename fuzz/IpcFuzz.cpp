// A client sends the input to a server in the same process, in chunks whose length depends on the
// first byte. The server delivers exactly the messages that a plain parser of the whole stream
// finds, answers only a complete topic, and closes the connection.

#include "toolkit/encoding/UTF8.h"
#include "toolkit/ipc/IPCServer.h"
#include "toolkit/threading/FrameworkHold.h"

#include "support/Require.h"

#include <wx/evtloop.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace Toolkit;
using Messages = std::vector<std::wstring>;

// Codes of the IPC protocol of wxWidgets. The format is wxIPC_UTF8TEXT.
constexpr char c_execute = 1;
constexpr char c_connect = 10;
constexpr char c_utf8Format = 17;

// In bytes: a topic of 16 MiB; a message of as many wide characters and a null character.
constexpr std::size_t c_maxTopicSize = std::size_t{16} << 20;
constexpr std::size_t c_maxDataSize = (c_maxTopicSize + 1) * sizeof(wchar_t);

class TemporaryDirectory {
public:
    TemporaryDirectory()
    {
        std::string name = (std::filesystem::temp_directory_path() / "fuzz-XXXXXX").native();
        Require(::mkdtemp(name.data()) != nullptr);
        m_path = name;
    }
    ~TemporaryDirectory() { std::filesystem::remove_all(m_path); }

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string SocketPath() const { return m_path + "/socket"; }

private:
    std::string m_path;
};

class Collector : public IPCConnectionEvent {
public:
    explicit Collector(Messages& messages) : m_messages(messages) {}
    void OnExecute(const TString<wchar_t>& text) override { m_messages.push_back(text); }

private:
    Messages& m_messages;
};

// The server and the event loop that serves its clients.
class TestServer {
public:
    TestServer() : m_server(Widen(m_directory.SocketPath())), m_activator(&m_loop)
    {
        m_server.AddListener(smart_ptr<IPCConnectionEvent>(new Collector(m_messages)));
        Require(m_server.Run());
    }

    std::string SocketPath() const { return m_directory.SocketPath(); }
    void Dispatch() { m_loop.DispatchTimeout(1000); }
    Messages TakeMessages() { return std::exchange(m_messages, {}); }

private:
    static std::wstring Widen(const std::string& text) { return {text.begin(), text.end()}; }

    TemporaryDirectory m_directory;
    FrameworkHold m_framework;
    Messages m_messages;
    IPCServer m_server;
    wxConsoleEventLoop m_loop;
    wxEventLoopActivator m_activator;
};

int Connect(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    Require(::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0);
    return socket;
}

// Sends `bytes` as far as the server accepts them. Returns the server's answer once the server has
// closed the connection.
std::string SendAndReceive(TestServer& server, std::string_view bytes, std::size_t chunkLength)
{
    const int socket = Connect(server.SocketPath());
    while (!bytes.empty()) {
        const std::size_t length = std::min(chunkLength, bytes.size());
        if (::send(socket, bytes.data(), length, MSG_NOSIGNAL | MSG_DONTWAIT) < 0)
            break;
        bytes.remove_prefix(length);
        server.Dispatch();
    }
    ::shutdown(socket, SHUT_WR);
    std::string answer;
    for (;;) {
        char byte = 0;
        const ssize_t count = ::recv(socket, &byte, 1, MSG_DONTWAIT);
        if (count == 1)
            answer.push_back(byte);
        else if (count == 0 || errno != EAGAIN)
            break;
        else
            server.Dispatch();
    }
    ::close(socket);
    return answer;
}

// What a plain parser finds in the whole stream.
struct ParsedStream {
    bool isAnswered = false;
    Messages messages;
};

// Extracts a size and a block of that size from the front of `bytes`; false if the block is
// incomplete or larger than `maxSize`.
bool ReadBlock(std::string_view& bytes, std::size_t maxSize, std::string& block)
{
    if (bytes.size() < 4)
        return false;
    std::uint32_t size = 0;
    std::memcpy(&size, bytes.data(), sizeof size);
    bytes.remove_prefix(4);
    if (size > maxSize || bytes.size() < size)
        return false;
    block = bytes.substr(0, size);
    bytes.remove_prefix(size);
    return true;
}

// Adds the text of a message. Treats any format but UTF-8 as wide characters. Drops invalid UTF-8.
void AddMessage(Messages& messages, char format, const std::string& data)
{
    if (format != c_utf8Format) {
        std::wstring text(data.size() / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), data.data(), text.size() * sizeof(wchar_t));
        messages.emplace_back(text.c_str());
        return;
    }
    const std::string utf8 = data.c_str();
    const TString<wchar_t> text = UTF8::ToUNICODE(utf8);
    if (utf8.empty() || !text.empty())
        messages.push_back(text);
}

ParsedStream ParseStream(std::string_view bytes)
{
    ParsedStream parsed;
    std::string block;
    if (bytes.empty() || bytes.front() != c_connect)
        return parsed;
    bytes.remove_prefix(1);
    parsed.isAnswered = ReadBlock(bytes, c_maxTopicSize, block);
    while (parsed.isAnswered && bytes.size() > 1 && bytes.front() == c_execute) {
        const char format = bytes[1];
        bytes.remove_prefix(2);
        if (!ReadBlock(bytes, c_maxDataSize, block))
            break;
        AddMessage(parsed.messages, format, block);
    }
    return parsed;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t maxInputSize = 65536;
    static TestServer server;
    if (size == 0 || size > maxInputSize)
        return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::size_t chunkLength = 1 + data[0] % 64 * std::size_t{64};

    const std::string answer = SendAndReceive(server, bytes, chunkLength);
    const Messages messages = server.TakeMessages();

    const ParsedStream expected = ParseStream(bytes);
    Require(messages == expected.messages);
    Require(answer == (expected.isAnswered ? std::string(1, c_connect) : std::string()));
    return 0;
}
