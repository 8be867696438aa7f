#include "MailMessage.h"

#include <string>

namespace MailTool {

namespace {

RegExp Pattern(const Utf8& pattern)
{
    return RegExp(pattern, RegExpOptions::None);
}

// The value of a named group; empty when the pattern does not match.
Utf8 Find(const Utf8& pattern, const char* group, const Utf8& subject)
{
    const smart_ptr<MatchResult> match = Pattern(pattern).Match(subject);
    const smart_ptr<Group> found = match->GetGroup(group);
    return found.IsValid() ? found->value : Utf8();
}

Utf8 Remove(const Utf8& pattern, const Utf8& subject)
{
    return Pattern(pattern).Replace(Utf8(), subject, 0);
}

// Bytes of UTF-8 that are to be kept as a content.
Content ToContent(const Utf8& text)
{
    return new Bytes(reinterpret_cast<const unsigned char*>(text.data()),
                     static_cast<unsigned int>(text.size()));
}

Utf8 DecodeQuotedPrintable(const Utf8& encoded)
{
    // Soft line breaks first: the decoder drops their "=" alone.
    return UTF8::ToUTF8(QP::ToUNICODE(UTF8::ToUNICODE(Remove("=[ \\t]*\\r?\\n", encoded))));
}

Content DecodeBase64(const Utf8& encoded)
{
    // The decoder takes a line end for a digit.
    return B64::ToB64(UTF8::ToUNICODE(Remove("\\s+", encoded)));
}

Utf8 ValueOf(const smart_ptr<MatchResult>& match, const char* name)
{
    const smart_ptr<Group> group = match->GetGroup(name);
    return group.IsValid() ? group->value : Utf8();
}

Part DecodePart(const Entity& entity)
{
    Part part;
    part.type =
        UTF8::ToUNICODE(Find("^(?<type>[^;\\s]*)", "type", entity.GetField("Content-Type")));
    part.name = UTF8::ToUNICODE(entity.GetParameter("Content-Disposition", "filename"));
    const Utf8 encoding = entity.GetField("Content-Transfer-Encoding");
    if (encoding.compareNoCase("base64") == 0)
        part.content = DecodeBase64(entity.GetBody());
    else if (encoding.compareNoCase("quoted-printable") == 0)
        part.content = ToContent(DecodeQuotedPrintable(entity.GetBody()));
    else
        part.content = ToContent(entity.GetBody());
    return part;
}

} // namespace

Entity::Entity(const Utf8& text)
{
    const smart_ptr<MatchResult> match =
        Pattern("(?s)\\A(?<header>.*?\\r?\\n)(?:\\r?\\n(?<body>.*))?\\z").Match(text);
    if (!match->Success())
        return;
    // A line that begins with a blank continues the one before.
    m_header = Pattern("\\r?\\n[ \\t]+").Replace(Utf8(" "), ValueOf(match, "header"), 0);
    m_body = ValueOf(match, "body");
}

Utf8 Entity::GetField(const Utf8& name) const
{
    return Find("(?im)^" + name + ":[ \\t]*(?<value>[^\\r\\n]*)", "value", m_header);
}

Utf8 Entity::GetParameter(const Utf8& field, const Utf8& name) const
{
    return Find("(?i);\\s*" + name + "=\"?(?<value>[^\";]*)", "value", GetField(field));
}

std::vector<Part> DecodeParts(const Entity& message)
{
    const Utf8 boundary = message.GetParameter("Content-Type", "boundary");
    if (boundary.empty())
        return {DecodePart(message)};

    std::vector<Part> parts;
    const RegExp delimiter =
        Pattern("(?s)--\\Q" + boundary + "\\E\\r?\\n(?<part>.*?)\\r?\\n(?<rest>--\\Q" + boundary +
                "\\E.*)");
    Utf8 rest = message.GetBody();
    while (true) {
        const smart_ptr<MatchResult> match = delimiter.Match(rest);
        if (!match->Success())
            return parts;
        parts.push_back(DecodePart(Entity(match->GetGroup("part")->value)));
        rest = match->GetGroup("rest")->value;
    }
}

Text DecodeWords(Utf8 text)
{
    const RegExp word = Pattern("(?i)(?<before>.*?)=\\?utf-8\\?(?<kind>[bq])\\?(?<text>[^?]*)\\?=(?"
                                ":\\s+(?==\\?))?(?<rest>.*)");
    Text decoded;
    for (auto match = word.Match(text); match->Success(); match = word.Match(text)) {
        decoded += UTF8::ToUNICODE(match->GetGroup("before")->value);
        const Utf8 encoded = match->GetGroup("text")->value;
        if (match->GetGroup("kind")->value.compareNoCase("q") == 0) {
            Text blanks = UTF8::ToUNICODE(encoded);
            blanks.Replace(L"_", L" ");
            decoded += QP::ToUNICODE(blanks);
        } else {
            const Content bytes = DecodeBase64(encoded);
            unsigned char* data = nullptr;
            unsigned int size = 0;
            bytes->GetBytes(&data, &size);
            decoded += UTF8::ToUNICODE(std::string(data, data + size));
            delete[] data;
        }
        const smart_ptr<Group> rest = match->GetGroup("rest");
        text = rest.IsValid() ? rest->value : Utf8();
    }
    return decoded + UTF8::ToUNICODE(text);
}

DateTime ParseDate(const Utf8& field)
{
    const Utf8 monthNames = "JanFebMarAprMayJunJulAugSepOctNovDec";

    const smart_ptr<MatchResult> match =
        Pattern("(?<day>\\d+) (?<month>[A-Z][a-z][a-z]) (?<year>\\d{4}) "
                "(?<hour>\\d\\d):(?<minute>\\d\\d):(?<second>\\d\\d) "
                "(?<sign>[-+])(?<zoneHours>\\d\\d)(?<zoneMinutes>\\d\\d)")
            .Match(field);
    if (!match->Success())
        return DateTime(0, 0, 0, 0, 0, 0);

    const auto number = [&match](const char* group) {
        unsigned int value = 0;
        StringConvert::ToUint32(match->GetGroup(group)->value, value);
        return value;
    };
    const std::size_t month = monthNames.find(match->GetGroup("month")->value) / 3 + 1;
    // Zones count in whole hours: one of +05:30 is half an hour behind that of +06:00.
    const unsigned int minutes = number("zoneMinutes");
    const bool isEast = match->GetGroup("sign")->value == "+";
    const int hours = static_cast<int>(number("zoneHours"));
    const int zone = isEast ? hours + (minutes > 0 ? 1 : 0) : -hours;
    DateTime date(number("year"), static_cast<unsigned int>(month), number("day"), number("hour"),
                  number("minute"), number("second"), zone);
    return date.Add(0, isEast && minutes > 0 ? 60 - minutes : minutes, 0);
}

} // namespace MailTool
