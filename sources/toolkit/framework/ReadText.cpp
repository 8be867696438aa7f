#include "toolkit/framework/ReadText.h"

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/Utf8.h"

#include <wx/strconv.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <fcntl.h>
#include <string_view>
#include <sys/types.h>

namespace Toolkit::Framework {
namespace {

using namespace std::string_view_literals;

enum class Encoding { Utf8, Utf16BigEndian, Utf16LittleEndian, Utf32BigEndian, Utf32LittleEndian };

struct ByteOrderMark {
    std::string_view bytes;
    Encoding encoding;
};

// The Unicode Standard, section 23.8. The little-endian mark of UTF-32 begins with that of UTF-16,
// so UTF-32 comes first.
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

// The UTF-32 converters of wxWidgets do not check that a character is a Unicode scalar value.
bool IsScalarValue(wchar_t character)
{
    return (character >= 0 && character < 0xD800) || (character > 0xDFFF && character <= 0x10FFFF);
}

// Returns false if the bytes are not valid.
bool DecodeWith(const wxMBConv& converter, std::string_view bytes, std::wstring& text)
{
    if (bytes.empty())
        return true;
    const std::size_t length = converter.ToWChar(nullptr, 0, bytes.data(), bytes.size());
    if (length == wxCONV_FAILED)
        return false;
    text.resize(length);
    return converter.ToWChar(text.data(), length, bytes.data(), bytes.size()) != wxCONV_FAILED &&
           std::all_of(text.begin(), text.end(), IsScalarValue);
}

// Decodes UTF-16 and UTF-32; returns false if the bytes are not valid.
bool DecodeWide(Encoding encoding, std::string_view bytes, std::wstring& text)
{
    switch (encoding) {
    case Encoding::Utf8:
        break;
    case Encoding::Utf16BigEndian:
        return DecodeWith(wxMBConvUTF16BE(), bytes, text);
    case Encoding::Utf16LittleEndian:
        return DecodeWith(wxMBConvUTF16LE(), bytes, text);
    case Encoding::Utf32BigEndian:
        return DecodeWith(wxMBConvUTF32BE(), bytes, text);
    case Encoding::Utf32LittleEndian:
        return DecodeWith(wxMBConvUTF32LE(), bytes, text);
    }
    return false;
}

// Reads the file from its current position to its end; returns false after an error.
bool ReadBytes(const Base::FileDescriptor& file, std::string& bytes)
{
    constexpr std::size_t blockSize = 65536;

    // One byte more than the file's length, so that the read that finds the end of the file needs
    // no more memory. Pipes have no length.
    const auto expected = static_cast<std::size_t>(std::max<long long>(file.GetLength(), 0));
    bytes.resize(expected > 0 ? expected + 1 : blockSize);
    std::size_t length = 0;
    ssize_t count = 0;
    do {
        if (length == bytes.size())
            bytes.resize(length + blockSize);
        count = file.Read(bytes.data() + length, bytes.size() - length);
        length += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    } while (count > 0);
    bytes.resize(length);
    return count == 0;
}

std::string ConvertLatin1ToUtf8(const std::string& bytes)
{
    const auto* const units = reinterpret_cast<const unsigned char*>(bytes.data());
    const std::wstring text(units, units + bytes.size());
    std::string encoded;
    Base::AppendEncodedUtf8(encoded, text.data(), text.size());
    return encoded;
}

// Removes the byte-order mark and converts the other bytes to UTF-8. Returns false for invalid
// UTF-16 or UTF-32; invalid UTF-8 is read as ISO 8859-1.
bool Transcode(std::string& bytes)
{
    const ByteOrderMark mark = FindByteOrderMark(bytes);
    bytes.erase(0, mark.bytes.size());
    if (mark.encoding == Encoding::Utf8) {
        if (!Base::IsUtf8(bytes.data(), bytes.size()))
            bytes = ConvertLatin1ToUtf8(bytes);
        return true;
    }
    std::wstring text;
    if (!DecodeWide(mark.encoding, bytes, text))
        return false;
    bytes.clear();
    return Base::AppendEncodedUtf8(bytes, text.data(), text.size());
}

} // namespace

bool ReadText(const std::string& path, std::string& text)
{
    const Base::FileDescriptor file = Base::FileDescriptor::Open(path, O_RDONLY);
    return file.IsOpen() && ReadBytes(file, text) && Transcode(text);
}

} // namespace Toolkit::Framework
