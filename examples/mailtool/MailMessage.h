#pragma once

#include <string>
#include <toolkit/Toolkit.h>
#include <vector>

namespace MailTool {

using namespace Toolkit;

using Text = TString<wchar_t>;
using Utf8 = TString<char>; // for messages and patterns
using Content = smart_ptr<Bytes>;

// The header and body of a message, or of one of its parts (RFC 5322, RFC 2045).
class Entity {
public:
    explicit Entity(const Utf8& text);

    // Returns the value of a header field, not decoded; empty if there is no such field.
    Utf8 GetField(const Utf8& name) const;

    // Returns the value of a parameter; empty if there is none. In
    //     Content-Type: multipart/mixed; boundary="x"
    // the value of the parameter "boundary" is "x".
    Utf8 GetParameter(const Utf8& field, const Utf8& name) const;

    const Utf8& GetBody() const { return m_body; }

private:
    Utf8 m_header;
    Utf8 m_body;
};

// Returns a copy of the bytes.
std::string ToBytes(const Content& content);

// A decoded part of a message.
struct Part {
    Text type; // such as "text/plain"
    Text name; // of an attached file; may be empty
    Content content;
};

// Returns the decoded parts of a message; the whole body as one part if the message has no
// boundary.
std::vector<Part> DecodeParts(const Entity& message);

// Decodes the encoded words of a header field, such as =?UTF-8?Q?caf=C3=A9?= (RFC 2047). Does
// not decode words in character sets other than UTF-8.
Text DecodeWords(Utf8 text);

// Parses a date such as "Thu, 05 Mar 2009 07:04:09 +0530". Returns an invalid date on failure.
DateTime ParseDate(const Utf8& field);

} // namespace MailTool
