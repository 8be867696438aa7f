#include "toolkit/archive/LocalHeader.Private.h"

#include <cstddef>

namespace Toolkit {
namespace {

// APPNOTE, 4.3.7 and 4.5.3.
constexpr std::size_t c_flagsAt = 6;
constexpr std::size_t c_methodAt = 8;
constexpr std::size_t c_checksumAt = 14;
constexpr std::size_t c_compressedSizeAt = 18;
constexpr std::size_t c_sizeAt = 22;
constexpr std::size_t c_nameLengthAt = 26;
constexpr std::size_t c_extraLengthAt = 28;
constexpr std::size_t c_headerLength = 30;
constexpr std::uint64_t c_hasDescriptor = 8;
constexpr std::uint64_t c_isStored = 0;
constexpr std::uint64_t c_zip64 = 1;
constexpr std::uint64_t c_inZip64 = 0xFFFFFFFF;

std::uint64_t Get(const std::string& bytes, std::size_t at, std::size_t length)
{
    std::uint64_t value = 0;
    for (std::size_t i = length; i > 0; --i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
    return value;
}

void Put(std::string& bytes, std::size_t at, std::size_t length, std::uint64_t value)
{
    for (std::size_t i = 0; i < length; ++i, value >>= 8)
        bytes[at + i] = static_cast<char>(value & 0xFF);
}

// Where the ZIP64 sizes are; 0 when there are none within `bytes`.
std::size_t FindZip64Sizes(const std::string& bytes)
{
    constexpr std::size_t fieldHeaderLength = 4;
    constexpr std::size_t sizesLength = 16;

    std::size_t at = c_headerLength + Get(bytes, c_nameLengthAt, 2);
    const std::size_t end = at + Get(bytes, c_extraLengthAt, 2);
    while (at + fieldHeaderLength + sizesLength <= end && end <= bytes.size()) {
        const std::uint64_t length = Get(bytes, at + 2, 2);
        const bool isZip64 = Get(bytes, at, 2) == c_zip64;
        at += fieldHeaderLength;
        if (isZip64)
            return length >= sizesLength ? at : 0;
        at += length;
    }
    return 0;
}

bool PutSizes(std::string& bytes, const EntryData& data)
{
    const std::uint64_t compressedSize = Get(bytes, c_compressedSizeAt, 4);
    const std::uint64_t size = Get(bytes, c_sizeAt, 4);
    if (compressedSize == c_inZip64 && size == c_inZip64) {
        const std::size_t at = FindZip64Sizes(bytes);
        if (at == 0)
            return false;
        Put(bytes, at, 8, data.size);
        Put(bytes, at + 8, 8, data.compressedSize);
        return true;
    }
    const bool isNeeded =
        compressedSize == 0 && size == 0 && Get(bytes, c_methodAt, 2) == c_isStored;
    if (!isNeeded || data.compressedSize >= c_inZip64 || data.size >= c_inZip64)
        return false;
    Put(bytes, c_compressedSizeAt, 4, data.compressedSize);
    Put(bytes, c_sizeAt, 4, data.size);
    return true;
}

} // namespace

bool CompleteLocalHeader(std::string& bytes, const EntryData& data)
{
    if (bytes.size() < c_headerLength || bytes.compare(0, 4, "PK\3\4") != 0)
        return false;
    const std::uint64_t flags = Get(bytes, c_flagsAt, 2);
    if ((flags & c_hasDescriptor) && PutSizes(bytes, data)) {
        Put(bytes, c_checksumAt, 4, data.checksum);
        Put(bytes, c_flagsAt, 2, flags & ~c_hasDescriptor);
    }
    return true;
}

} // namespace Toolkit
