#pragma once

#include <string>
#include <toolkit/Toolkit.h>
#include <vector>

namespace MailTool {

using namespace Toolkit;

using Text = TString<wchar_t>;
using Utf8 = TString<char>; // a message, and what the patterns work on
using Content = smart_ptr<Bytes>;

// Header and body of a message, or of one of its parts (RFC 5322, RFC 2045).
class Entity {
public:
    explicit Entity(const Utf8& text);

    // The value of a header line, not decoded; empty when there is none.
    Utf8 GetField(const Utf8& name) const;

    // A parameter such as the boundary in: Content-Type: multipart/mixed; boundary="x"
    Utf8 GetParameter(const Utf8& field, const Utf8& name) const;

    const Utf8& GetBody() const { return m_body; }

private:
    Utf8 m_header;
    Utf8 m_body;
};

// The bytes of a content.
std::string ToBytes(const Content& content);

// A part after decoding.
struct Part {
    Text type;
    Text name;
    Content content;
};

// The parts of a message; the message itself when it has only one.
std::vector<Part> DecodeParts(const Entity& message);

// A header text with its encoded words, such as =?UTF-8?Q?caf=C3=A9?=, decoded (RFC 2047).
Text DecodeWords(Utf8 text);

// The moment in a date field such as: Thu, 05 Mar 2009 07:04:09 +0530. Invalid when there is none.
DateTime ParseDate(const Utf8& field);

} // namespace MailTool
