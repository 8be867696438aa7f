#include "MailMessage.h"

#include <memory>

namespace MailTool {

namespace {

RegExp MakePattern(const Utf8& pattern)
{
    return RegExp(pattern, RegExpOptions::None);
}

// Returns a pattern that matches `text` literally.
Utf8 EscapeForPattern(const Utf8& text)
{
    const auto isWordCharacter = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
               static_cast<unsigned char>(c) >= 0x80; // part of a UTF-8 sequence
    };
    Utf8 pattern;
    for (const char c : text) {
        if (!isWordCharacter(c))
            pattern += '\\';
        pattern += c;
    }
    return pattern;
}

Utf8 GetValue(const smart_ptr<MatchResult>& match, const char* group)
{
    const smart_ptr<Group> found = match->GetGroup(group);
    return found.IsValid() ? found->value : Utf8();
}

// Returns the value of a named group; empty if the pattern does not match.
Utf8 Find(const Utf8& pattern, const char* group, const Utf8& subject)
{
    return GetValue(MakePattern(pattern).Match(subject), group);
}

Utf8 Remove(const Utf8& pattern, const Utf8& subject)
{
    return MakePattern(pattern).Replace(Utf8(), subject, 0);
}

// Copies the bytes of `text` into a new Content.
Content ToContent(const Utf8& text)
{
    return new Bytes(reinterpret_cast<const unsigned char*>(text.data()),
                     static_cast<unsigned int>(text.size()));
}

Utf8 DecodeQuotedPrintable(const Utf8& encoded)
{
    // Removes soft line breaks first: the decoder would drop only their "=" and keep the line
    // ending.
    return UTF8::ToUTF8(QP::ToUNICODE(UTF8::ToUNICODE(Remove("=[ \\t]*\\r?\\n", encoded))));
}

Content DecodeBase64(const Utf8& encoded)
{
    // The decoder would treat a line ending as a digit.
    return B64::ToB64(UTF8::ToUNICODE(Remove("\\s+", encoded)));
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
        MakePattern("(?s)\\A(?<header>.*?\\r?\\n)(?:\\r?\\n(?<body>.*))?\\z").Match(text);
    if (!match->Success())
        return;
    // A line that begins with a space or tab continues the previous one.
    m_header = MakePattern("\\r?\\n[ \\t]+").Replace(Utf8(" "), GetValue(match, "header"), 0);
    m_body = GetValue(match, "body");
}

Utf8 Entity::GetField(const Utf8& name) const
{
    return Find("(?im)^" + EscapeForPattern(name) + ":[ \\t]*(?<value>[^\\r\\n]*)", "value",
                m_header);
}

Utf8 Entity::GetParameter(const Utf8& field, const Utf8& name) const
{
    return Find("(?i);\\s*" + EscapeForPattern(name) + "=\"?(?<value>[^\";]*)", "value",
                GetField(field));
}

std::string ToBytes(const Content& content)
{
    unsigned char* data = nullptr;
    unsigned int size = 0;
    content->GetBytes(&data, &size);
    const std::unique_ptr<unsigned char[]> owner(data); // the caller of GetBytes() owns the array
    return std::string(data, data + size);
}

std::vector<Part> DecodeParts(const Entity& message)
{
    const Utf8 boundary = message.GetParameter("Content-Type", "boundary");
    if (boundary.empty())
        return {DecodePart(message)};

    std::vector<Part> parts;
    const Utf8 delimiterLine = "--" + EscapeForPattern(boundary);
    const RegExp delimiter = MakePattern(
        "(?s)" + delimiterLine + "\\r?\\n(?<part>.*?)\\r?\\n(?<rest>" + delimiterLine + ".*)");
    Utf8 rest = message.GetBody();
    while (true) {
        const smart_ptr<MatchResult> match = delimiter.Match(rest);
        if (!match->Success())
            return parts;
        parts.push_back(DecodePart(Entity(GetValue(match, "part"))));
        rest = GetValue(match, "rest");
    }
}

Text DecodeWords(Utf8 text)
{
    const RegExp word =
        MakePattern("(?i)(?<before>.*?)=\\?utf-8\\?(?<kind>[bq])\\?(?<text>[^?]*)\\?="
                    "(?:\\s+(?==\\?))?" // white space between two encoded words is dropped
                    "(?<rest>.*)");
    Text decoded;
    for (auto match = word.Match(text); match->Success(); match = word.Match(text)) {
        decoded += UTF8::ToUNICODE(GetValue(match, "before"));
        const Utf8 encoded = GetValue(match, "text");
        if (GetValue(match, "kind").compareNoCase("q") == 0) {
            Text spaced = UTF8::ToUNICODE(encoded);
            spaced.Replace(L"_", L" ");
            decoded += QP::ToUNICODE(spaced);
        } else {
            decoded += UTF8::ToUNICODE(ToBytes(DecodeBase64(encoded)));
        }
        text = GetValue(match, "rest");
    }
    return decoded + UTF8::ToUNICODE(text);
}

DateTime ParseDate(const Utf8& field)
{
    const Utf8 monthNames = "JanFebMarAprMayJunJulAugSepOctNovDec";

    const smart_ptr<MatchResult> match =
        MakePattern("(?<day>\\d+) (?<month>[A-Z][a-z][a-z]) (?<year>\\d{4}) "
                    "(?<hour>\\d\\d):(?<minute>\\d\\d):(?<second>\\d\\d) "
                    "(?<sign>[-+])(?<zoneHours>\\d\\d)(?<zoneMinutes>\\d\\d)")
            .Match(field);
    if (!match->Success())
        return DateTime(0, 0, 0, 0, 0, 0);

    const auto parseNumber = [&match](const char* group) {
        unsigned int value = 0;
        StringConvert::ToUint32(GetValue(match, group), value);
        return value;
    };
    const std::size_t month = monthNames.find(GetValue(match, "month")) / 3 + 1;
    // DateTime supports only offsets of whole hours: 07:04 +05:30 becomes 07:34 +06:00.
    const unsigned int minutes = parseNumber("zoneMinutes");
    const bool isEast = GetValue(match, "sign") == "+";
    const int hours = static_cast<int>(parseNumber("zoneHours"));
    const int zone = isEast ? hours + (minutes > 0 ? 1 : 0) : -hours;
    DateTime date(parseNumber("year"), static_cast<unsigned int>(month), parseNumber("day"),
                  parseNumber("hour"), parseNumber("minute"), parseNumber("second"), zone);
    return date.Add(0, isEast && minutes > 0 ? 60 - minutes : minutes, 0);
}

} // namespace MailTool
