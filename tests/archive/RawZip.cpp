#include "archive/RawZip.h"

namespace Toolkit::TestSupport {
namespace {

constexpr std::uint64_t c_version = 45;

// Returns the fields that an entry's header shares with its record in the directory.
std::string PackCommonFields(const RawEntry& entry)
{
    const std::uint64_t compressedSize = entry.compressedSize.value_or(entry.data.size());
    return PackNumber(c_version, 2) + PackNumber(entry.flags, 2) + PackNumber(entry.method, 2) +
           PackNumber(0, 4) +
           PackNumber(entry.checksum.value_or(ComputeChecksum(entry.content)), 4) +
           PackNumber(compressedSize, 4) +
           PackNumber(entry.size.value_or(entry.content.size()), 4) +
           PackNumber(entry.name.size(), 2) + PackNumber(entry.extra.size(), 2);
}

} // namespace

std::string RawZip(const std::vector<RawEntry>& entries)
{
    std::string archive;
    std::string directory;
    for (const RawEntry& entry : entries) {
        const std::string common = PackCommonFields(entry);
        directory += "PK\1\2" + PackNumber(c_version, 2) + common + PackNumber(0, 10) +
                     PackNumber(entry.offset.value_or(archive.size()), 4) + entry.name +
                     entry.extra;
        archive += "PK\3\4" + common + entry.name + entry.extra + entry.data;
    }
    return archive + directory + "PK\5\6" + PackNumber(0, 4) + PackNumber(entries.size(), 2) +
           PackNumber(entries.size(), 2) + PackNumber(directory.size(), 4) +
           PackNumber(archive.size(), 4) + PackNumber(0, 2);
}

std::string Deflate(const std::string& content)
{
    return "\1" + PackNumber(content.size(), 2) + PackNumber(~content.size(), 2) + content;
}

std::uint32_t ComputeChecksum(const std::string& bytes)
{
    constexpr std::uint32_t polynomial = 0xEDB88320;
    std::uint32_t checksum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        checksum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            checksum = (checksum >> 1) ^ (checksum & 1 ? polynomial : 0);
    }
    return ~checksum;
}

std::string PackNumber(std::uint64_t value, int size)
{
    std::string bytes;
    for (; size > 0; --size) {
        bytes.push_back(static_cast<char>(value & 0xFF));
        value >>= 8;
    }
    return bytes;
}

} // namespace Toolkit::TestSupport
