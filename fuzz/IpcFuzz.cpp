// A client sends the input to a server in the same process, in chunks of the length given by the
// first byte. The server delivers exactly the messages that a plain parser of the whole stream
// finds, answers only a complete topic, and ends the connection.

#include "toolkit/encoding/UTF8.h"
#include "toolkit/ipc/IPCServer.h"
#include "toolkit/threading/FrameworkHold.h"

#include "support/Require.h"

#include <wx/evtloop.h>

#include <algorithm>
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
using Texts = std::vector<std::wstring>;

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

    std::string Socket() const { return m_path + "/socket"; }

private:
    std::string m_path;
};

class Collector : public IPCConnectionEvent {
public:
    explicit Collector(Texts& texts) : m_texts(texts) {}
    void OnExecute(const TString<wchar_t>& text) override { m_texts.push_back(text); }

private:
    Texts& m_texts;
};

// The server and the event loop that serves its clients.
class World {
public:
    World() : m_server(Wide(m_directory.Socket())), m_activator(&m_loop)
    {
        m_server.AddListener(smart_ptr<IPCConnectionEvent>(new Collector(m_texts)));
        Require(m_server.Run());
    }

    std::string Socket() const { return m_directory.Socket(); }
    void Dispatch() { m_loop.DispatchTimeout(1000); }
    Texts TakeTexts() { return std::exchange(m_texts, {}); }

private:
    static std::wstring Wide(const std::string& text) { return {text.begin(), text.end()}; }

    TemporaryDirectory m_directory;
    FrameworkHold m_framework;
    Texts m_texts;
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

// Sends all bytes and returns the server's answer after the server closes the connection.
std::string Talk(World& world, std::string_view bytes, std::size_t pieceLength)
{
    const int socket = Connect(world.Socket());
    while (!bytes.empty()) {
        const std::size_t length = std::min(pieceLength, bytes.size());
        if (::send(socket, bytes.data(), length, MSG_NOSIGNAL | MSG_DONTWAIT) < 0)
            break;
        bytes.remove_prefix(length);
        world.Dispatch();
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
            world.Dispatch();
    }
    ::close(socket);
    return answer;
}

// What a plain parser finds in the whole stream.
struct Meaning {
    bool isAnswered = false;
    Texts texts;
};

bool TakeBlock(std::string_view& bytes, std::size_t longest, std::string& block)
{
    if (bytes.size() < 4)
        return false;
    std::uint32_t size = 0;
    std::memcpy(&size, bytes.data(), sizeof size);
    bytes.remove_prefix(4);
    if (size > longest || bytes.size() < size)
        return false;
    block = bytes.substr(0, size);
    bytes.remove_prefix(size);
    return true;
}

void AddText(Texts& texts, char format, const std::string& data)
{
    if (format != 17) {
        std::wstring text(data.size() / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), data.data(), text.size() * sizeof(wchar_t));
        texts.emplace_back(text.c_str());
        return;
    }
    const std::string utf8 = data.c_str();
    const TString<wchar_t> text = UTF8::ToUNICODE(utf8);
    if (utf8.empty() || !text.empty())
        texts.push_back(text);
}

Meaning Read(std::string_view bytes)
{
    Meaning meaning;
    std::string block;
    if (bytes.empty() || bytes.front() != 10)
        return meaning;
    bytes.remove_prefix(1);
    meaning.isAnswered = TakeBlock(bytes, std::size_t{16} << 20, block);
    while (meaning.isAnswered && bytes.size() > 1 && bytes.front() == 1) {
        const char format = bytes[1];
        bytes.remove_prefix(2);
        if (!TakeBlock(bytes, (std::size_t{64} << 20) + 4, block))
            break;
        AddText(meaning.texts, format, block);
    }
    return meaning;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static World world;
    if (size == 0 || size > 65536)
        return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::size_t pieceLength = 1 + data[0] % 64 * std::size_t{64};

    const std::string answer = Talk(world, bytes, pieceLength);
    const Texts texts = world.TakeTexts();

    const Meaning meaning = Read(bytes);
    Require(texts == meaning.texts);
    Require(answer == (meaning.isAnswered ? "\x0A" : ""));
    return 0;
}
