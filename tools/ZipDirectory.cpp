#include "ZipDirectory.h"

#include <algorithm>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>

#include "Descriptor.h"
#include "Failure.h"

namespace Tool {
namespace {

// APPNOTE, 4.3.12 and 4.3.16.
constexpr std::string_view c_entrySignature = "PK\x01\x02";
constexpr std::string_view c_endSignature = "PK\x05\x06";
constexpr std::size_t c_entryLength = 46;
constexpr std::size_t c_endLength = 22;
constexpr std::size_t c_longestComment = 65535;

std::size_t Number(std::string_view bytes, std::size_t at, int size)
{
    std::size_t number = 0;
    for (int i = size - 1; i >= 0; --i)
        number = number << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    return number;
}

std::string ReadAt(const Descriptor& file, off_t offset, std::size_t length)
{
    std::string bytes(length, '\0');
    const ssize_t count = ::pread(file.Get(), bytes.data(), bytes.size(), offset);
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

// The entries of the directory, one after the other; empty when it is not found.
std::string ReadDirectory(const Descriptor& file, off_t length)
{
    const auto tailLength = std::min<off_t>(length, c_endLength + c_longestComment);
    const std::string tail =
        ReadAt(file, length - tailLength, static_cast<std::size_t>(tailLength));
    const std::size_t end = tail.rfind(c_endSignature);
    if (end == std::string::npos || tail.size() - end < c_endLength)
        return {};
    constexpr std::size_t sizeAt = 12;
    const std::size_t size = Number(tail, end + sizeAt, 4);
    const off_t endOffset = length - tailLength + static_cast<off_t>(end);
    if (static_cast<off_t>(size) > endOffset)
        return {};
    return ReadAt(file, endOffset - static_cast<off_t>(size), size);
}

} // namespace

std::vector<StoredZipEntry> ReadZipDirectory(const std::string& path)
{
    constexpr std::size_t nameLengthAt = 28;
    constexpr std::size_t extraLengthAt = 30;
    constexpr std::size_t commentLengthAt = 32;
    constexpr std::size_t modeAt = 40; // the high half of the attributes

    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0)
        throw SystemFailure("cannot read " + path);
    const std::string directory = ReadDirectory(file, status.st_size);
    std::vector<StoredZipEntry> entries;
    std::string_view rest = directory;
    while (rest.size() >= c_entryLength && rest.substr(0, 4) == c_entrySignature) {
        const std::size_t nameLength = Number(rest, nameLengthAt, 2);
        const std::size_t length = c_entryLength + nameLength + Number(rest, extraLengthAt, 2) +
                                   Number(rest, commentLengthAt, 2);
        entries.push_back({std::string(rest.substr(c_entryLength, nameLength)),
                           static_cast<mode_t>(Number(rest, modeAt, 2))});
        rest.remove_prefix(std::min(length, rest.size()));
    }
    return entries;
}

} // namespace Tool
