#include "toolkit/framework/TextFileLines.h"

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/FileReplacement.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/framework/Text.h"

#include <wx/strconv.h>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/types.h>
#include <system_error>

namespace Toolkit::Framework {
namespace {

using namespace std::string_view_literals;

enum class Encoding { Utf8, Utf16BigEndian, Utf16LittleEndian, Utf32BigEndian, Utf32LittleEndian };

struct ByteOrderMark {
    std::string_view bytes;
    Encoding encoding;
};

// The Unicode Standard, section 23.8. The mark of UTF-32 begins with that of UTF-16, so it comes
// first.
constexpr std::array<ByteOrderMark, 5> c_byteOrderMarks{{
    {"\xEF\xBB\xBF"sv, Encoding::Utf8},
    {"\x00\x00\xFE\xFF"sv, Encoding::Utf32BigEndian},
    {"\xFF\xFE\x00\x00"sv, Encoding::Utf32LittleEndian},
    {"\xFE\xFF"sv, Encoding::Utf16BigEndian},
    {"\xFF\xFE"sv, Encoding::Utf16LittleEndian},
}};

ByteOrderMark FindByteOrderMark(std::string_view text)
{
    for (const ByteOrderMark& mark : c_byteOrderMarks) {
        if (text.substr(0, mark.bytes.size()) == mark.bytes)
            return mark;
    }
    return {{}, Encoding::Utf8};
}

// The UTF-32 converters of wxWidgets accept every value.
bool IsCodePoint(wchar_t character)
{
    return (character >= 0 && character < 0xD800) || (character > 0xDFFF && character <= 0x10FFFF);
}

// Decodes UTF-16 and UTF-32; false when the bytes are not valid.
bool DecodeWide(Encoding encoding, std::string_view bytes, std::wstring& text)
{
    const wxMBConvUTF16BE utf16BigEndian;
    const wxMBConvUTF16LE utf16LittleEndian;
    const wxMBConvUTF32BE utf32BigEndian;
    const wxMBConvUTF32LE utf32LittleEndian;
    const wxMBConv& converter = encoding == Encoding::Utf16BigEndian      ? utf16BigEndian
                                : encoding == Encoding::Utf16LittleEndian ? utf16LittleEndian
                                : encoding == Encoding::Utf32BigEndian
                                    ? static_cast<const wxMBConv&>(utf32BigEndian)
                                    : utf32LittleEndian;
    if (bytes.empty())
        return true;
    const std::size_t length = converter.ToWChar(nullptr, 0, bytes.data(), bytes.size());
    if (length == wxCONV_FAILED)
        return false;
    text.resize(length);
    return converter.ToWChar(text.data(), length, bytes.data(), bytes.size()) != wxCONV_FAILED &&
           std::all_of(text.begin(), text.end(), IsCodePoint);
}

bool ReadWholeFile(const std::string& path, std::string& bytes)
{
    constexpr std::size_t blockSize = 65536;

    const Base::FileDescriptor file = Base::FileDescriptor::Open(path, O_RDONLY);
    if (!file.IsOpen())
        return false;
    const auto expected = static_cast<std::size_t>(file.GetLength());
    std::size_t length = 0;
    ssize_t count = 0;
    do {
        // One block more than the file's length: the read that finds the end needs no new memory.
        bytes.resize(std::max(expected, length) + blockSize);
        count = file.Read(bytes.data() + length, bytes.size() - length);
        length += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    } while (count > 0);
    bytes.resize(length);
    return count == 0;
}

} // namespace

bool TextFileLines::Load(const std::string& path)
{
    Unload();
    std::string bytes;
    if (!ReadWholeFile(path, bytes) || !ReadBytes(bytes)) {
        Clear();
        return false;
    }
    // Absolute, so that a change of the working directory does not matter.
    std::error_code unknown;
    m_path = std::filesystem::absolute(path, unknown).native();
    if (unknown)
        m_path = path;
    return true;
}

void TextFileLines::Unload()
{
    Clear();
    m_path.clear();
    m_hasLostLine = false;
}

void TextFileLines::Append(const std::wstring& line)
{
    const std::size_t count = GetLineCount();
    if (Base::Completes([&] { AddLine(ToWxString(line)); }))
        return;
    m_hasLostLine = true;
    // wxTextBuffer has added the line but not its type: the two lists no longer match.
    if (GetLineCount() != count)
        Clear();
}

bool TextFileLines::ReadBytes(const std::string& bytes)
{
    const ByteOrderMark mark = FindByteOrderMark(bytes);
    const char* const begin = bytes.data() + mark.bytes.size();
    const char* const end = bytes.data() + bytes.size();
    if (mark.encoding != Encoding::Utf8) {
        std::wstring text;
        const auto copy = [](wxString& line, const wchar_t* from, std::size_t length) {
            line.assign(from, length);
            return true;
        };
        return DecodeWide(mark.encoding, {begin, static_cast<std::size_t>(end - begin)}, text) &&
               AddLines(text.data(), text.data() + text.size(), copy);
    }
    if (AddUtf8Lines(begin, end))
        return true;
    Clear();
    const auto widen = [](wxString& line, const char* from, std::size_t length) {
        const auto* const units = reinterpret_cast<const unsigned char*>(from);
        line = wxString(std::wstring(units, units + length));
        return true;
    };
    return AddLines(begin, end, widen);
}

bool TextFileLines::AddUtf8Lines(const char* begin, const char* end)
{
    std::wstring decoded;
    return AddLines(begin, end, [&decoded](wxString& line, const char* from, std::size_t length) {
        decoded.clear();
        if (!Base::AppendDecodedUtf8(decoded, from, length))
            return false;
        line.assign(decoded.data(), decoded.size());
        return true;
    });
}

// Splits at line ends and lets `decode` fill each line in the list; false when `decode` fails.
template <typename Char, typename Decode>
bool TextFileLines::AddLines(const Char* begin, const Char* end, Decode decode)
{
    const auto isLineEnd = [](Char character) { return character == '\n' || character == '\r'; };
    while (begin != end) {
        const Char* const lineEnd = std::find_if(begin, end, isLineEnd);
        const Char* next = lineEnd;
        wxTextFileType type = wxTextFileType_None;
        if (lineEnd != end) {
            ++next;
            type = *lineEnd == '\n' ? wxTextFileType_Unix : wxTextFileType_Mac;
            if (*lineEnd == '\r' && next != end && *next == '\n') {
                ++next;
                type = wxTextFileType_Dos;
            }
        }
        AddLine(wxString(), type);
        if (!decode(GetLine(GetLineCount() - 1), begin, static_cast<std::size_t>(lineEnd - begin)))
            return false;
        begin = next;
    }
    return true;
}

bool TextFileLines::Save() const
{
    std::string bytes;
    if (m_path.empty() || m_hasLostLine || !EncodeLines(bytes))
        return false;
    Base::FileReplacement replacement(m_path);
    return replacement.Write(bytes.data(), bytes.size()) && replacement.Commit();
}

bool TextFileLines::EncodeLines(std::string& bytes) const
{
    for (std::size_t i = 0; i < GetLineCount(); ++i) {
        const wxString& line = GetLine(i);
        if (!Base::AppendEncodedUtf8(bytes, line.wx_str(), line.length()))
            return false;
        // The last line of the loaded file may have no line end; it needs one if lines follow.
        const bool isLast = i + 1 == GetLineCount();
        const wxTextFileType type = GetLineType(i);
        const wxChar* const lineEnd =
            GetEOL(type == wxTextFileType_None && !isLast ? typeDefault : type);
        bytes.append(lineEnd, lineEnd + std::char_traits<wxChar>::length(lineEnd));
    }
    return true;
}

} // namespace Toolkit::Framework
