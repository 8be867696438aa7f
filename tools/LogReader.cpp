#include "LogReader.h"

#include <algorithm>
#include <cstring>
#include <unistd.h>

#include "Failure.h"

namespace Tool {
namespace {

constexpr std::size_t c_maxRecordLength = 1 << 20;
constexpr std::size_t c_bufferSize = 2 * c_maxRecordLength;

// Fits into the processor's cache.
constexpr std::size_t c_blockSize = 1 << 18;

} // namespace

LogReader::LogReader(int file, off_t begin, off_t end)
    : m_file(file), m_next(begin), m_end(end), m_buffer(c_bufferSize)
{
}

bool LogReader::Read(LogRecord& record)
{
    if (!FillTo(1))
        return false;
    const Extent extent = FindEnd();
    record.offset = m_next - static_cast<off_t>(m_filled - m_used);
    record.text = GetUnread().substr(0, extent.length);
    record.isEnded = extent.isEnded;
    record.header = ParseLogHeader(record.text);
    m_used += extent.length + (extent.isEnded ? 1 : 0);
    return true;
}

// Moves the unread bytes to the beginning of the buffer and reads more; false at the end of the
// range.
bool LogReader::Fill()
{
    std::memmove(m_buffer.data(), m_buffer.data() + m_used, m_filled - m_used);
    m_filled -= m_used;
    m_used = 0;
    const auto remaining = static_cast<std::size_t>(std::max<off_t>(m_end - m_next, 0));
    const std::size_t size = std::min({m_buffer.size() - m_filled, remaining, c_blockSize});
    ssize_t count = 0;
    do
        count = ::pread(m_file, m_buffer.data() + m_filled, size, m_next);
    while (count < 0 && errno == EINTR);
    if (count < 0)
        throw MakeSystemFailure("cannot read the log");
    m_filled += static_cast<std::size_t>(count);
    m_next += count;
    return count > 0;
}

// Fills the buffer until it has `length` unread bytes; false if the range ends first.
bool LogReader::FillTo(std::size_t length)
{
    while (m_filled - m_used < length) {
        if (!Fill())
            return false;
    }
    return true;
}

// Finds the end of the record: a line feed before a new log line, or the end of the range. Splits a
// record longer than c_maxRecordLength at its last line feed before that length, or at that length
// if there is no line feed before it.
LogReader::Extent LogReader::FindEnd()
{
    std::size_t length = 0;
    for (;;) {
        const std::size_t lineEnd = GetUnread().find('\n', length);
        if (lineEnd > c_maxRecordLength && GetUnread().size() > c_maxRecordLength)
            return {length > 0 ? length - 1 : c_maxRecordLength, length > 0};
        if (lineEnd == std::string_view::npos) {
            if (!Fill())
                return {GetUnread().size(), false};
            continue;
        }
        FillTo(lineEnd + 1 + c_maxLineStartLength);
        const std::string_view next = GetUnread().substr(lineEnd + 1);
        if (next.empty() || StartsLikeLogLine(next))
            return {lineEnd, true};
        length = lineEnd + 1;
    }
}

} // namespace Tool
