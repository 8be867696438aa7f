#include "ZipDirectory.h"

#include <algorithm>
#include <cstdint>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>

#include "Descriptor.h"
#include "Failure.h"

namespace Tool {
namespace {

// Signatures and minimum lengths of the records in APPNOTE, 4.3.12, 4.3.14, 4.3.15 and 4.3.16. The
// offsets of their fields, below, are from there too.
constexpr std::string_view c_entrySignature = "PK\x01\x02";
constexpr std::string_view c_zip64EndSignature = "PK\x06\x06";
constexpr std::string_view c_locatorSignature = "PK\x06\x07";
constexpr std::string_view c_endSignature = "PK\x05\x06";
constexpr std::size_t c_entryLength = 46;
constexpr std::size_t c_zip64EndLength = 56;
constexpr std::size_t c_locatorLength = 20;
constexpr std::size_t c_endLength = 22;
constexpr std::size_t c_maxCommentLength = 65535;

// What the end record of an archive says about the central directory.
struct Directory {
    std::uint64_t count;
    std::uint64_t size;
    std::uint64_t offset;
    std::uint64_t end; // the offset of the end record
};

Failure MakeDamagedDirectoryFailure()
{
    return Failure("archive refused: the central directory is damaged");
}

std::uint64_t ParseNumber(std::string_view bytes, std::size_t at, int size)
{
    std::uint64_t number = 0;
    for (int i = size - 1; i >= 0; --i)
        number = number << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    return number;
}

// Reads `length` bytes, or fewer if the file ends there or cannot be read.
std::string ReadAt(const Descriptor& file, std::uint64_t offset, std::size_t length)
{
    std::string bytes(length, '\0');
    const ssize_t count =
        ::pread(file.Get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

// Returns an empty string unless a complete record with this signature is at `offset`.
std::string ReadRecord(const Descriptor& file, std::uint64_t offset, std::size_t length,
                       std::string_view signature)
{
    std::string record = ReadAt(file, offset, length);
    if (record.size() < length || record.compare(0, signature.size(), signature) != 0)
        record.clear();
    return record;
}

// Reads the ZIP64 end record, whose values are used even if those of the ordinary end record would
// fit.
Directory ReadZip64End(const Descriptor& file, std::string_view locator, std::uint64_t end)
{
    const std::string record =
        ReadRecord(file, ParseNumber(locator, 8, 8), c_zip64EndLength, c_zip64EndSignature);
    if (record.empty())
        throw MakeDamagedDirectoryFailure();
    return {ParseNumber(record, 32, 8), ParseNumber(record, 40, 8), ParseNumber(record, 48, 8),
            end};
}

// Searches backwards for the end record, which a comment of any length may follow.
Directory FindDirectory(const Descriptor& file, std::uint64_t length)
{
    const auto tailLength = std::min<std::uint64_t>(length, c_endLength + c_maxCommentLength);
    const std::string tail = ReadAt(file, length - tailLength, tailLength);
    const std::size_t endAt = tail.size() < c_endLength
                                  ? std::string::npos
                                  : tail.rfind(c_endSignature, tail.size() - c_endLength);
    if (endAt == std::string::npos)
        throw MakeDamagedDirectoryFailure();
    const std::uint64_t end = length - tailLength + endAt;
    if (end >= c_locatorLength) {
        const std::string locator =
            ReadRecord(file, end - c_locatorLength, c_locatorLength, c_locatorSignature);
        if (!locator.empty())
            return ReadZip64End(file, locator, end);
    }
    return {ParseNumber(tail, endAt + 10, 2), ParseNumber(tail, endAt + 12, 4),
            ParseNumber(tail, endAt + 16, 4), end};
}

bool HasEntryAt(const Descriptor& file, std::uint64_t offset)
{
    return !ReadRecord(file, offset, c_entryLength, c_entrySignature).empty();
}

// Returns the offset of the first directory entry. If the archive is appended to a program, the
// stored offset is too small.
std::uint64_t FindFirstEntry(const Descriptor& file, const Directory& directory)
{
    if (directory.offset <= directory.end && HasEntryAt(file, directory.offset))
        return directory.offset;
    if (directory.size > directory.end)
        throw MakeDamagedDirectoryFailure();
    return directory.end - directory.size;
}

std::vector<StoredZipEntry> ReadEntries(const Descriptor& file, std::uint64_t offset)
{
    constexpr std::size_t nameLengthAt = 28;
    constexpr std::size_t extraLengthAt = 30;
    constexpr std::size_t commentLengthAt = 32;
    constexpr std::size_t modeAt = 40; // the high half of the external attributes

    std::vector<StoredZipEntry> entries;
    for (;;) {
        const std::string entry = ReadRecord(file, offset, c_entryLength, c_entrySignature);
        if (entry.empty())
            return entries;
        const std::size_t nameLength = ParseNumber(entry, nameLengthAt, 2);
        entries.push_back({ReadAt(file, offset + c_entryLength, nameLength),
                           static_cast<mode_t>(ParseNumber(entry, modeAt, 2))});
        offset += c_entryLength + nameLength + ParseNumber(entry, extraLengthAt, 2) +
                  ParseNumber(entry, commentLengthAt, 2);
    }
}

} // namespace

std::vector<StoredZipEntry> ReadZipDirectory(const std::string& path)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0)
        throw MakeSystemFailure("cannot read " + path);
    const Directory directory = FindDirectory(file, static_cast<std::uint64_t>(status.st_size));
    if (directory.count == 0)
        return {};
    std::vector<StoredZipEntry> entries = ReadEntries(file, FindFirstEntry(file, directory));
    if (entries.size() != directory.count)
        throw MakeDamagedDirectoryFailure();
    return entries;
}

} // namespace Tool
