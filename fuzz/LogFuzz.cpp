// Any log is read completely: its records add up to the bytes of the file, and each byte is in
// exactly one of the parts that are listed in time order.

#include "support/Input.h"
#include "support/InputLog.h"
#include "support/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using namespace Tool;

// One value of the first byte inserts a message that is longer than the longest record, at the
// offset in the second byte. Only one value does so, because such a log is slow to read.
std::string ReadLog(Input& input)
{
    constexpr std::uint8_t longMarker = 17;
    constexpr std::size_t longMessageLength = 1'100'000;
    const bool isLong = input.ReadByte() == longMarker;
    const std::size_t position = input.ReadByte();
    std::string bytes = input.ReadRest();
    if (isLong)
        bytes.insert(std::min(position, bytes.size()), std::string(longMessageLength, 'x'));
    return bytes;
}

void CheckHeader(const LogRecord& record)
{
    if (!record.header)
        return;
    Require(StartsLikeLogLine(record.text));
    Require(record.header->severity >= 0 && record.header->severity <= 4);
    const std::string_view message = record.header->message;
    Require(record.text.substr(record.text.size() - message.size()) == message);
}

// Returns the bytes of the part, joined from its records.
std::string ReadPart(const InputLog& log, const LogPart& part)
{
    constexpr std::size_t maxRecordSize = 1 << 20;
    std::string bytes;
    log.ForEachRecord(part, [&](const LogRecord& record) {
        Require(record.offset == part.begin + static_cast<off_t>(bytes.size()));
        Require(record.text.size() <= maxRecordSize);
        Require(record.isEnded || !record.text.empty());
        CheckHeader(record);
        bytes.append(record.text).append(record.isEnded ? 1 : 0, '\n');
    });
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const std::string bytes = ReadLog(input);
    const InputLog log(bytes);
    const auto length = static_cast<off_t>(bytes.size());

    Require(ReadPart(log, {0, length}) == bytes);
    off_t end = length;
    for (const LogPart& part : log.ListParts()) {
        // The parts are in time order, and the newest one is at the beginning of the file.
        Require(part.end == end && part.begin <= part.end);
        end = part.begin;
        const auto begin = static_cast<std::size_t>(part.begin);
        Require(ReadPart(log, part) ==
                bytes.substr(begin, static_cast<std::size_t>(part.end) - begin));
    }
    Require(end == 0);
    return 0;
}
