#include "toolkit/base/ShortenName.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/ipc/Protocol.Private.h"

#include <algorithm>
#include <cstdint>
#include <sys/un.h>
#include <utility>

namespace Toolkit::Ipc {
namespace {

// The first byte of a message, as in sckipc.cpp of wxWidgets.
constexpr char c_execute = 1;
constexpr char c_connect = c_accepted;
constexpr char c_disconnect = 11;

constexpr std::size_t c_formatOffset = 1;
constexpr std::size_t c_sizeLength = 4;

// In bytes. The topic of an IPCClient is its message, so this also limits every message, encoded as
// UTF-8.
constexpr std::size_t c_maxTopicLength = std::size_t{16} << 20;

// In bytes: room for as many wide characters as such a topic can encode, and a null character.
constexpr std::size_t c_maxDataLength = (c_maxTopicLength + 1) * sizeof(wchar_t);

// The path in a socket address ends with a null byte.
constexpr std::size_t c_maxPathLength = sizeof(sockaddr_un::sun_path) - 1;
constexpr std::size_t c_hashLength = 16; // of Base::ShortenName()

constexpr std::uint32_t c_lastCharacter = 0x10FFFF;

void WriteSize(char* bytes, std::size_t size)
{
    for (std::size_t i = 0; i < c_sizeLength; ++i)
        bytes[i] = static_cast<char>(size >> (8 * i));
}

std::size_t ReadSize(const char* bytes)
{
    std::size_t size = 0;
    for (std::size_t i = c_sizeLength; i > 0; --i)
        size = size << 8 | static_cast<unsigned char>(bytes[i - 1]);
    return size;
}

bool IsNumber(const std::wstring& text)
{
    return std::all_of(text.begin(), text.end(),
                       [](wchar_t character) { return character >= L'0' && character <= L'9'; });
}

// Never cuts a UTF-8 character in two: macOS rejects names that are not UTF-8.
std::string Shorten(const std::string& path)
{
    std::size_t maxLength = c_maxPathLength;
    while (maxLength < path.size() && (path[maxLength - c_hashLength] & 0xC0) == 0x80)
        --maxLength;
    return Base::ShortenName(path, maxLength);
}

std::wstring ReplaceUnencodable(std::wstring_view text)
{
    std::wstring encodable(text);
    const auto isUnencodable = [](wchar_t character) {
        return static_cast<std::uint32_t>(character) > c_lastCharacter;
    };
    std::replace_if(encodable.begin(), encodable.end(), isUnencodable, L'\uFFFD');
    return encodable;
}

} // namespace

std::string MakeSocketPath(const std::wstring& service)
{
    // wxWidgets treats a number as a port, which would be open to the network. A null character
    // would end the path early; as the first character, it would even name an abstract socket,
    // which has no permissions.
    std::string path;
    if (service.empty() || IsNumber(service) || service.find(L'\0') != std::wstring::npos ||
        !Base::AppendEncodedUtf8(path, service.data(), service.size()))
        return {};
    // wxWidgets would treat a name without a separator as the name of a port.
    if (path.find('/') == std::string::npos)
        path.insert(0, "./");
    return Shorten(path);
}

std::string MakeConnectRequest(std::wstring_view topic)
{
    constexpr std::size_t headerLength = 1 + c_sizeLength;
    if (topic.size() > c_maxTopicLength)
        return {};
    std::string bytes(headerLength, c_connect);
    if (!Base::AppendEncodedUtf8(bytes, topic.data(), topic.size())) {
        const std::wstring encodable = ReplaceUnencodable(topic);
        Base::AppendEncodedUtf8(bytes, encodable.data(), encodable.size());
    }
    const std::size_t size = bytes.size() - headerLength;
    if (size > c_maxTopicLength)
        return {};
    WriteSize(&bytes[1], size);
    return bytes;
}

std::string MakeExecuteRequest(std::wstring_view text)
{
    constexpr std::size_t headerLength = c_formatOffset + 1 + c_sizeLength;
    const std::size_t length = text.size() * sizeof(wchar_t);
    const std::size_t size = length + sizeof(wchar_t);
    std::string bytes;
    bytes.reserve(headerLength + size + 1);
    bytes.assign({c_execute, static_cast<char>(c_textFormat)});
    bytes.resize(headerLength);
    WriteSize(&bytes[c_formatOffset + 1], size);
    bytes.append(reinterpret_cast<const char*>(text.data()), length);
    bytes.append(sizeof(wchar_t), '\0');
    bytes.push_back(c_disconnect);
    return bytes;
}

MessageParser::Message MessageParser::Parse(std::string_view& bytes)
{
    Message message = Message::Incomplete;
    while (message == Message::Incomplete && !bytes.empty())
        message = m_isHeaderComplete ? ParsePayload(bytes) : ParseHeader(bytes);
    return message;
}

MessageParser::Message MessageParser::ParseHeader(std::string_view& bytes)
{
    m_header.push_back(bytes.front());
    bytes.remove_prefix(1);
    const std::size_t length = HeaderLength();
    if (length == 0)
        return Message::Broken;
    if (m_header.size() < length)
        return Message::Incomplete;
    if (m_header.front() == c_disconnect)
        return Message::Disconnect;

    m_missing = ReadSize(m_header.data() + length - c_sizeLength);
    if (m_missing > (m_isTopicMissing ? c_maxTopicLength : c_maxDataLength))
        return Message::Broken;
    m_isHeaderComplete = true;
    return m_missing == 0 ? Complete() : Message::Incomplete;
}

// Returns 0 for a message that is not allowed at this point.
std::size_t MessageParser::HeaderLength() const
{
    const char code = m_header.front();
    if (m_isTopicMissing)
        return code == c_connect ? 1 + c_sizeLength : 0;
    if (code == c_execute)
        return c_formatOffset + 1 + c_sizeLength;
    return code == c_disconnect ? 1 : 0;
}

MessageParser::Message MessageParser::ParsePayload(std::string_view& bytes)
{
    const std::size_t length = std::min(m_missing, bytes.size());
    if (!m_isTopicMissing)
        Store(bytes.substr(0, length));
    bytes.remove_prefix(length);
    m_missing -= length;
    return m_missing == 0 ? Complete() : Message::Incomplete;
}

// When the buffer is full, doubles its capacity, but never beyond the announced size.
void MessageParser::Store(std::string_view bytes)
{
    const std::size_t needed = m_data.size() + bytes.size();
    if (needed > m_data.capacity())
        m_data.reserve(
            std::min(m_data.size() + m_missing, std::max(needed, 2 * m_data.capacity())));
    m_data.insert(m_data.end(), bytes.begin(), bytes.end());
}

std::vector<char> MessageParser::TakeData()
{
    return std::exchange(m_data, {});
}

MessageParser::Message MessageParser::Complete()
{
    const bool isTopic = m_isTopicMissing;
    if (!isTopic)
        m_format = static_cast<unsigned char>(m_header[c_formatOffset]);
    m_isTopicMissing = false;
    m_isHeaderComplete = false;
    m_header.clear();
    return isTopic ? Message::Topic : Message::Execute;
}

} // namespace Toolkit::Ipc
