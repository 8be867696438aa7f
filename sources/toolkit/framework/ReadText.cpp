#include "toolkit/framework/ReadText.h"

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/Utf8.h"

#include <wx/strconv.h>

#include <algorithm>
#include <array>
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
// so it comes first.
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

// Reads the rest of the file into `bytes`.
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

std::string EncodeLatin1(const std::string& bytes)
{
    const auto* const units = reinterpret_cast<const unsigned char*>(bytes.data());
    const std::wstring text(units, units + bytes.size());
    std::string encoded;
    Base::AppendEncodedUtf8(encoded, text.data(), text.size());
    return encoded;
}

// Removes the byte-order mark and converts the rest to UTF-8. False for invalid UTF-16 or UTF-32;
// invalid UTF-8 is read as ISO 8859-1.
bool Transcode(std::string& bytes)
{
    const ByteOrderMark mark = FindByteOrderMark(bytes);
    bytes.erase(0, mark.bytes.size());
    if (mark.encoding == Encoding::Utf8) {
        if (!Base::IsUtf8(bytes.data(), bytes.size()))
            bytes = EncodeLatin1(bytes);
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
