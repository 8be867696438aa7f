#include "LogFollower.h"

#include <algorithm>
#include <ctime>
#include <utility>

#include "FileTime.h"

namespace Tool {
namespace {

constexpr std::size_t c_headLength = 64;

// By how much a line may be older than the one before it: a thread may wait after reading the time.
constexpr std::int64_t c_longestDelayMs = 1000;
constexpr std::int64_t c_longestDelaySeconds = 2;

// File times advance in steps of a few milliseconds; a second write within one step does not change
// them.
constexpr double c_restSeconds = 0.1;

bool IsSameTime(const timespec& one, const timespec& other)
{
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

bool IsRecent(const timespec& written)
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const auto seconds = static_cast<double>(now.tv_sec - written.tv_sec);
    return seconds + static_cast<double>(now.tv_nsec - written.tv_nsec) / 1e9 < c_restSeconds;
}

LogRecord ParseRecord(const std::string& text, off_t offset)
{
    return {offset, text, true, ParseLogHeader(text)};
}

} // namespace

std::string ReadHead(int file)
{
    std::string head(c_headLength, '\0');
    const ssize_t count = ::pread(file, head.data(), head.size(), 0);
    head.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return head;
}

LogFollower::LogFollower(Descriptor file, const LogPosition& position, LogPrinter& printer)
    : m_file(std::move(file)), m_printer(printer), m_position(position.offset),
      m_newestTick(position.newestTick), m_roundMs(2 * c_longestDelayMs),
      m_knownLength(position.length)
{
    KeepHead(position.head);
    struct stat status {};
    if (::fstat(m_file.Get(), &status) == 0)
        m_inode = status.st_ino;
}

void LogFollower::Poll()
{
    struct stat status {};
    if (::fstat(m_file.Get(), &status) != 0)
        return;
    m_isRemoved = status.st_nlink == 0;
    if (!HasChanged(status))
        return;
    FollowTruncation(status.st_size);
    PrintNew(status);
    if (IsHeadChanged()) {
        m_position = 0;
        PrintNew(status);
    }
    m_knownLength = status.st_size;
    KeepHead(ReadHead(m_file.Get()));
}

bool LogFollower::HasChanged(const struct stat& status)
{
    const bool isSame =
        status.st_size == m_size && IsSameTime(GetModificationTime(status), m_written);
    m_size = status.st_size;
    m_written = GetModificationTime(status);
    return !isSame || !m_unconfirmed.empty() || IsRecent(GetModificationTime(status));
}

void LogFollower::FollowTruncation(off_t size)
{
    if (size >= m_position)
        return;
    m_position = size;
    m_knownLength = size;
    m_head.resize(std::min(m_head.size(), static_cast<std::size_t>(size)));
}

bool LogFollower::IsHeadChanged() const
{
    return !m_head.empty() && ReadHead(m_file.Get()).substr(0, m_head.size()) != m_head;
}

// What comes after m_position may change without a wrap.
void LogFollower::KeepHead(std::string head)
{
    m_head = std::move(head);
    m_head.resize(std::min(m_head.size(), static_cast<std::size_t>(m_position)));
}

// Prints the lines from m_position on that are newer than what has been printed. Prints a line only
// when the one after it is known, because the rest of an old line may follow it.
void LogFollower::PrintNew(const struct stat& status)
{
    LogReader reader(m_file.Get(), m_position, status.st_size);
    std::optional<Candidate> candidate;
    LogRecord record;
    while (reader.Read(record)) {
        const bool isRest = !record.header;
        if (!isRest && !IsNew(record)) {
            m_roundMs = static_cast<std::int32_t>(m_newestTick.value_or(0) - record.header->tick);
            if (candidate)
                Settle(std::move(*candidate), status);
            return;
        }
        if (candidate)
            Confirm(*candidate, status);
        candidate = Candidate{std::string(record.text), record.offset, record.isEnded};
        // What comes after it is compared with it.
        if (!isRest && !record.header->isOfWx)
            m_newestTick = record.header->tick;
    }
    if (candidate)
        Settle(std::move(*candidate), status);
}

bool LogFollower::IsNew(const LogRecord& record) const
{
    // Messages of wxWidgets have the time of day.
    if (record.header->isOfWx)
        return record.header->tick + c_longestDelaySeconds >= m_written.tv_sec;
    if (!m_newestTick)
        return true;
    const auto step = static_cast<std::int32_t>(record.header->tick - *m_newestTick);
    return step >= -std::min(c_longestDelayMs, m_roundMs / 2);
}

void LogFollower::Confirm(const Candidate& candidate, const struct stat& status)
{
    const LogRecord record = ParseRecord(candidate.text, candidate.offset);
    if (record.header && !record.header->isOfWx)
        m_printer.SetClock(LogClock(record.header->tick, status));
    m_printer.Print(record);
    m_position = candidate.offset + static_cast<off_t>(candidate.text.size()) + 1;
    m_unconfirmed.clear();
}

// Handles the last new text. If the file has grown, the text is complete up to its last line feed.
// Otherwise older lines follow, and its last line may be the rest of one: the text is complete when
// it is the same at the next call.
void LogFollower::Settle(Candidate candidate, const struct stat& status)
{
    const off_t end = candidate.offset + static_cast<off_t>(candidate.text.size());
    const bool isAppended = end > m_knownLength;
    if (!isAppended && !ParseLogHeader(candidate.text))
        return;
    if (!isAppended || !candidate.isEnded) {
        const std::size_t lastLine = candidate.text.rfind('\n');
        if (lastLine != std::string::npos)
            candidate.text.resize(lastLine);
        else if (isAppended)
            return;
    }
    if (isAppended || candidate.text == m_unconfirmed)
        Confirm(candidate, status);
    else
        m_unconfirmed = std::move(candidate.text);
}

} // namespace Tool
