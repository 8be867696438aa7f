#include "toolkit/archive/ArchiveStream.Private.h"
#include "toolkit/archive/EntryTextReader.Private.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/framework/Text.h"

#include <wx/txtstrm.h>

#include <algorithm>
#include <optional>
#include <string_view>

namespace Toolkit {
namespace {

constexpr const wchar_t* c_separators = L" \t";

// A range of the peeked bytes.
struct Span {
    std::size_t begin;
    std::size_t end;
};

bool IsLineEnd(char byte)
{
    return byte == '\n' || byte == '\r';
}

bool IsWhiteSpace(char byte)
{
    return byte == ' ' || byte == '\t' || IsLineEnd(byte);
}

// Whether `byte` may be the first byte of a byte-order mark.
bool MayBeginMark(char byte)
{
    return byte == '\xEF' || byte == '\xFE' || byte == '\xFF' || byte == '\0';
}

bool IsPlainAscii(char byte)
{
    return static_cast<signed char>(byte) > 0;
}

// Returns the next line; nothing if `bytes` do not contain its end.
std::optional<Span> FindLine(std::string_view bytes)
{
    const auto end = std::find_if(bytes.begin(), bytes.end(), IsLineEnd);
    if (end == bytes.end())
        return std::nullopt;
    return Span{0, static_cast<std::size_t>(end - bytes.begin())};
}

// Skips spaces, tabs and line endings, and returns the next word; nothing if `bytes` do not contain
// its end.
std::optional<Span> FindWord(std::string_view bytes)
{
    const auto begin = std::find_if_not(bytes.begin(), bytes.end(), IsWhiteSpace);
    const auto end = std::find_if(begin, bytes.end(), IsWhiteSpace);
    if (end == bytes.end())
        return std::nullopt;
    return Span{static_cast<std::size_t>(begin - bytes.begin()),
                static_cast<std::size_t>(end - bytes.begin())};
}

// Peeks until `find` succeeds. If a carriage return ends the span, peeks past it, because
// a line feed may follow. Returns nothing if the entry ends first.
template <typename Find>
std::optional<Span> Locate(ArchiveStream& stream, Find find)
{
    while (true) {
        const std::string_view peeked = stream.GetPeeked();
        const std::optional<Span> span = find(peeked);
        const bool mayBePair = span && peeked[span->end] == '\r' && span->end + 1 == peeked.size();
        if (span && !mayBePair)
            return span;
        if (!stream.PeekMore())
            return std::nullopt;
    }
}

// ZipReadLines: a fresh wxTextInputStream for each line, which reads one byte at a time, takes 8
// times as long.
//
// Reads plain text and the separator after it. Returns false, with nothing read, if only a
// wxTextInputStream can read the text.
template <typename Find>
bool ReadPlain(wxZipInputStream& anyStream, TString<wchar_t>& text, Find find)
{
    auto* const stream = dynamic_cast<ArchiveStream*>(&anyStream);
    if (!stream || !stream->IsOk())
        return false;
    stream->ReclaimUngetBytes();
    const std::optional<Span> span = Locate(*stream, find);
    if (!span)
        return false;

    const std::string_view peeked = stream->GetPeeked();
    const std::string_view bytes = peeked.substr(span->begin, span->end - span->begin);
    // After a carriage return, wxTextInputStream decodes another character, even an incomplete one.
    const bool decodesBeyondEnd = peeked[span->end] == '\r' && !IsPlainAscii(peeked[span->end + 1]);
    if (decodesBeyondEnd || MayBeginMark(peeked.front()) ||
        bytes.find('\0') != std::string_view::npos ||
        !Base::AppendDecodedUtf8(text, bytes.data(), bytes.size()))
        return false;
    const bool isPair = peeked.compare(span->end, 2, "\r\n") == 0;
    stream->Skip(span->end + (isPair ? 2 : 1));
    return true;
}

} // namespace

void ReadEntryWord(wxZipInputStream& stream, TString<wchar_t>& word)
{
    word.clear();
    if (!ReadPlain(stream, word, FindWord))
        word = Framework::ToText(wxTextInputStream(stream, c_separators).ReadWord());
}

void ReadEntryLine(wxZipInputStream& stream, TString<wchar_t>& line)
{
    line.clear();
    if (!ReadPlain(stream, line, FindLine))
        line = Framework::ToText(wxTextInputStream(stream, c_separators).ReadLine());
}

} // namespace Toolkit
