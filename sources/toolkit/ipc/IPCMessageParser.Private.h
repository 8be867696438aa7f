#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Toolkit {

/// Puts together what a client says from the pieces in which it arrives. Memory grows with what has
/// arrived, not with what is announced.
class IPCMessageParser {
public:
    enum class Message { Incomplete, Topic, Execute, Disconnect, Broken };

    /// Takes bytes from the front of `bytes` until a message is whole or there are none left.
    /// Behind a broken message there is nothing more to come.
    Message Take(std::string_view& bytes);

    /// Whether the client owes the rest of a message; its topic it owes from the start.
    bool IsExpecting() const { return m_isTopicMissing || !m_header.empty(); }

    /// The topic or the data of the message that Take() completed, until its next call. Aligned for
    /// every type.
    const std::vector<char>& Payload() const { return m_payload; }
    /// The format of a completed Execute.
    unsigned char Format() const { return m_format; }

private:
    Message TakeHeader(std::string_view& bytes);
    Message TakePayload(std::string_view& bytes);
    std::size_t HeaderLength() const;
    Message Complete();

    bool m_isTopicMissing = true;
    std::string m_header; // of the message that is under way
    bool m_isHeaderComplete = false;
    std::size_t m_payloadSize = 0;
    std::vector<char> m_payload;
    unsigned char m_format = 0;
};

} // namespace Toolkit
