// The lines of a log that has wrapped around in place are read in the order in which they were
// written.

#include "support/Input.h"
#include "support/InputLog.h"
#include "support/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace Tool;

constexpr std::size_t c_maxInputSize = 4096;

struct Line {
    std::size_t offset;
    std::size_t length;
    std::int64_t time;
    std::uint32_t tick;
};

// Writes lines like a logger that writes its queue to the file after each line.
class Ring {
public:
    explicit Ring(std::size_t limit) : m_limit(limit) {}

    void Write(std::int64_t time, std::uint32_t tick, std::size_t messageLength)
    {
        const std::string text =
            "2 " + std::to_string(tick) + " : 12 : f : " + std::string(messageLength, 'x') + "\n";
        const std::size_t end = m_position + text.size();
        m_lines.erase(std::remove_if(m_lines.begin(), m_lines.end(),
                                     [&](const Line& line) {
                                         return line.offset < end &&
                                                m_position < line.offset + line.length;
                                     }),
                      m_lines.end());
        m_lines.push_back({m_position, text.size(), time, tick});
        m_bytes.resize(std::max(m_bytes.size(), end));
        m_bytes.replace(m_position, text.size(), text);
        m_position = end < m_limit ? end : 0;
    }

    const std::string& Bytes() const { return m_bytes; }

    // Returns the lines without an overwritten byte, in the order in which they were written.
    const std::vector<Line>& Lines() const { return m_lines; }

    // Whether every jump back in time, from one line of the file to the next, is too large to come
    // from threads that overtake each other.
    bool IsUnambiguous() const
    {
        constexpr std::int64_t maxDelayMs = 1000;
        std::vector<Line> lines = m_lines;
        std::sort(lines.begin(), lines.end(),
                  [](const Line& one, const Line& other) { return one.offset < other.offset; });
        return std::adjacent_find(
                   lines.begin(), lines.end(), [](const Line& line, const Line& next) {
                       return next.time < line.time && next.time > line.time - maxDelayMs;
                   }) == lines.end();
    }

private:
    const std::size_t m_limit;
    std::size_t m_position = 0;
    std::string m_bytes;
    std::vector<Line> m_lines;
};

// Leaves at most 65 seconds between two lines, so that no log spans half the range of a tick count.
Ring CreateRing(Input& input, std::size_t size)
{
    Ring ring(input.ReadByte() * std::size_t{4});
    // A tick count that wraps around soon, or not at all.
    std::uint32_t tick = input.ReadByte() % 2 == 0 ? 0xFFFF'0000 : 1'000'000;
    std::int64_t time = 0;
    for (std::size_t used = 2; used < size; used += 2) {
        const std::uint32_t step = input.ReadByte() * 257U;
        tick += step;
        time += step;
        ring.Write(time, tick, input.ReadByte());
    }
    return ring;
}

std::vector<std::uint32_t> ReadTicks(const InputLog& log)
{
    std::vector<std::uint32_t> ticks;
    for (const LogPart& part : log.ListParts()) {
        log.ForEachRecord(part, [&](const LogRecord& record) {
            if (record.header)
                ticks.push_back(record.header->tick);
        });
    }
    return ticks;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > c_maxInputSize)
        return 0;
    Input input(data, size);
    const Ring ring = CreateRing(input, size);
    if (!ring.IsUnambiguous())
        return 0;

    std::vector<std::uint32_t> expected;
    for (const Line& line : ring.Lines())
        expected.push_back(line.tick);
    Require(ReadTicks(InputLog(ring.Bytes())) == expected);
    return 0;
}
