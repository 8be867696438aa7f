#include "toolkit/ipc/IPCMessageParser.Private.h"
#include "toolkit/ipc/IPCWire.Private.h"

#include <algorithm>

namespace Toolkit {
namespace {

constexpr std::size_t c_formatOffset = 1;

} // namespace

IPCMessageParser::Message IPCMessageParser::Take(std::string_view& bytes)
{
    Message message = Message::Incomplete;
    while (message == Message::Incomplete && !bytes.empty())
        message = m_isHeaderComplete ? TakePayload(bytes) : TakeHeader(bytes);
    return message;
}

IPCMessageParser::Message IPCMessageParser::TakeHeader(std::string_view& bytes)
{
    m_header.push_back(bytes.front());
    bytes.remove_prefix(1);
    const std::size_t length = HeaderLength();
    if (length == 0)
        return Message::Broken;
    if (m_header.size() < length)
        return Message::Incomplete;
    if (m_header.front() == IPCWire::c_disconnect)
        return Message::Disconnect;

    m_payloadSize = IPCWire::ReadSize(m_header.data() + length - IPCWire::c_sizeLength);
    if (m_payloadSize > (m_isTopicMissing ? IPCWire::c_longestTopic : IPCWire::c_longestData))
        return Message::Broken;
    m_payload.clear();
    m_isHeaderComplete = true;
    return m_payloadSize == 0 ? Complete() : Message::Incomplete;
}

// 0 for a message that cannot come here.
std::size_t IPCMessageParser::HeaderLength() const
{
    const char code = m_header.front();
    if (m_isTopicMissing)
        return code == IPCWire::c_connect ? 1 + IPCWire::c_sizeLength : 0;
    if (code == IPCWire::c_execute)
        return c_formatOffset + 1 + IPCWire::c_sizeLength;
    return code == IPCWire::c_disconnect ? 1 : 0;
}

IPCMessageParser::Message IPCMessageParser::TakePayload(std::string_view& bytes)
{
    const std::size_t length = std::min(m_payloadSize - m_payload.size(), bytes.size());
    m_payload.insert(m_payload.end(), bytes.begin(), bytes.begin() + static_cast<long>(length));
    bytes.remove_prefix(length);
    return m_payload.size() == m_payloadSize ? Complete() : Message::Incomplete;
}

IPCMessageParser::Message IPCMessageParser::Complete()
{
    const bool isTopic = m_isTopicMissing;
    if (!isTopic)
        m_format = static_cast<unsigned char>(m_header[c_formatOffset]);
    m_isTopicMissing = false;
    m_isHeaderComplete = false;
    m_header.clear();
    return isTopic ? Message::Topic : Message::Execute;
}

} // namespace Toolkit
