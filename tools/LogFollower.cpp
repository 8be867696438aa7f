#include "LogFollower.h"

#include <algorithm>
#include <ctime>
#include <string_view>
#include <utility>

#include "FileTime.h"

namespace Tool {
namespace {

constexpr off_t c_tailLength = 64;
constexpr std::size_t c_headLength = 256;
constexpr std::size_t c_restLength = 1 << 16;

// How much older a new line may be than the one before it: a thread may wait between reading the
// time and writing the line. A line that waited longer is printed when a new line follows it.
constexpr std::int64_t c_usualDelayMs = 100;

// How much older a message from wxWidgets may be than the last change of the file.
constexpr std::int64_t c_maxWxDelaySeconds = 2;

// File times advance in steps of a few milliseconds, and a second write within one step does not
// change them. So a file that was written less than this long ago is read again.
constexpr double c_recentSeconds = 0.1;

bool IsSameTime(const timespec& one, const timespec& other)
{
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

bool IsRecent(const timespec& written)
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const auto seconds = static_cast<double>(now.tv_sec - written.tv_sec);
    return seconds + static_cast<double>(now.tv_nsec - written.tv_nsec) / 1e9 < c_recentSeconds;
}

LogRecord ParseRecord(const std::string& text, off_t offset)
{
    return {offset, text, true, ParseLogHeader(text)};
}

std::string ReadAt(int file, off_t offset, std::size_t length)
{
    std::string text(length, '\0');
    const ssize_t count = ::pread(file, text.data(), text.size(), offset);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
}

} // namespace

std::string ReadHead(int file)
{
    return ReadAt(file, 0, c_headLength);
}

std::string ReadTail(int file, off_t position)
{
    const off_t begin = std::max<off_t>(position - c_tailLength, 0);
    return ReadAt(file, begin, static_cast<std::size_t>(position - begin));
}

std::string ReadRest(int file, off_t position, const struct stat& status)
{
    std::string rest = ReadAt(file, position, c_restLength);
    struct stat now {};
    const bool isSame = ::fstat(file, &now) == 0 && now.st_size == status.st_size &&
                        IsSameTime(GetModificationTime(now), GetModificationTime(status));
    return isSame ? rest : "";
}

LogFollower::LogFollower(Descriptor file, const LogPosition& position, LogPrinter& printer)
    : m_file(std::move(file)), m_printer(printer), m_position(position.offset),
      m_newestTick(position.newestTick), m_tail(position.tail), m_knownLength(position.length)
{
    SetHead(position.head);
    SetRest(position.rest);
    struct stat status {};
    if (::fstat(m_file.Get(), &status) == 0)
        m_inode = status.st_ino;
}

void LogFollower::Poll()
{
    // The head is read before the length: if it has changed, the logger had finished its round, so
    // the length includes the whole round.
    const std::string head = ReadHead(m_file.Get());
    struct stat status {};
    if (::fstat(m_file.Get(), &status) != 0)
        return;
    m_isRemoved = status.st_nlink == 0;
    if (!UpdateStatus(status))
        return;
    FollowTruncation(status.st_size);
    const bool isHeadChanged = !head.starts_with(m_head);
    if (!isHeadChanged || !IsRewritten())
        PrintNewLines(status, isHeadChanged);
    if (isHeadChanged)
        FollowWrap(status);
    m_knownLength = status.st_size;
    SetHead(head);
    m_tail = ReadTail(m_file.Get(), m_position);
    if (m_position != m_restOffset)
        SetRest(ReadRest(m_file.Get(), m_position, status));
}

// Returns whether the file must be read.
bool LogFollower::UpdateStatus(const struct stat& status)
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
    m_tail.clear();
}

// Whether even the text before m_position has changed: the file was truncated and has grown again.
bool LogFollower::IsRewritten() const
{
    const off_t begin = m_position - static_cast<off_t>(m_tail.size());
    return ReadAt(m_file.Get(), begin, m_tail.size()) != m_tail;
}

// Continues at the beginning of the file, with the lines of the new round.
void LogFollower::FollowWrap(const struct stat& status)
{
    const LogRecord oldHead = ParseRecord(m_head, 0);
    if (oldHead.header && !oldHead.header->isFromWx)
        MeasureRound(*oldHead.header);
    m_position = 0;
    SetRest("");
    m_unconfirmed.clear();
    PrintNewLines(status, false);
}

void LogFollower::SetRest(std::string rest)
{
    m_rest = std::move(rest);
    m_restOffset = m_position;
}

// Keeps only the first line up to m_position: the bytes after that may change without a wrap.
void LogFollower::SetHead(std::string head)
{
    m_head = std::move(head);
    const std::size_t line = std::min(m_head.size(), m_head.find('\n'));
    m_head.resize(std::min(line, static_cast<std::size_t>(m_position)));
}

// Prints the lines from m_position on that are newer than what has been printed.
void LogFollower::PrintNewLines(const struct stat& status, bool isRoundComplete)
{
    LogReader reader(m_file.Get(), m_position, status.st_size);
    Pending pending;
    LogRecord record;
    while (reader.Read(record) && HandleRecord(record, pending, status)) {
    }
    if (pending.maybeOld)
        MeasureRound(*ParseLogHeader(pending.maybeOld->text));
    if (pending.newest)
        HandleNewest(std::move(*pending.newest), status, isRoundComplete);
}

// Returns false at the record where the old lines begin.
bool LogFollower::HandleRecord(const LogRecord& record, Pending& pending, const struct stat& status)
{
    const Candidate next{std::string(record.text), record.offset, record.isEnded};
    if (record.header && !IsNew(record)) {
        if (pending.maybeOld || record.header->isFromWx)
            return false;
        pending.maybeOld = next;
        return true;
    }
    if (pending.newest)
        PrintCandidate(*pending.newest, status);
    if (pending.maybeOld)
        PrintCandidate(*pending.maybeOld, status);
    pending = {next, std::nullopt};
    // The following lines are compared with this one.
    if (record.header && !record.header->isFromWx)
        m_newestTick = record.header->tick;
    return true;
}

bool LogFollower::IsNew(const LogRecord& record) const
{
    if (record.offset >= m_knownLength)
        return true;
    // For messages from wxWidgets, `tick` is in seconds since 1970.
    if (record.header->isFromWx)
        return record.header->tick + c_maxWxDelaySeconds >= m_written.tv_sec;
    if (!m_newestTick)
        return true;
    // In a short round, the oldest lines are only a little older than the newest one.
    const auto step = static_cast<std::int32_t>(record.header->tick - *m_newestTick);
    return step >= -std::min(c_usualDelayMs, m_roundMs / 2);
}

void LogFollower::MeasureRound(const LogHeader& oldLine)
{
    m_roundMs = static_cast<std::int32_t>(m_newestTick.value_or(oldLine.tick) - oldLine.tick);
}

void LogFollower::PrintCandidate(const Candidate& candidate, const struct stat& status)
{
    const LogRecord record = ParseRecord(candidate.text, candidate.offset);
    if (record.header && !record.header->isFromWx)
        m_printer.SetClock(LogClock(record.header->tick, status));
    m_printer.Print(record);
    m_position = candidate.offset + static_cast<off_t>(candidate.text.size()) + 1;
    m_unconfirmed.clear();
}

// Prints the newest record if its text is complete. If the record extends the file, its text is
// complete up to the last line feed. If not, older lines follow, and the last lines of the record
// may be what is left of them: DropOldLines() removes these. The text is then complete if it is the
// same at the next call, or if the logger has finished the round.
void LogFollower::HandleNewest(Candidate candidate, const struct stat& status, bool isRoundComplete)
{
    const off_t end = candidate.offset + static_cast<off_t>(candidate.text.size());
    const bool isAppended = end > m_knownLength;
    if (!isAppended && !ParseLogHeader(candidate.text))
        return;
    if (!isAppended) {
        DropOldLines(candidate);
    } else if (!candidate.isEnded) {
        const std::size_t lastLine = candidate.text.rfind('\n');
        if (lastLine == std::string::npos)
            return;
        candidate.text.resize(lastLine);
    }
    if (isAppended || isRoundComplete || candidate.text == m_unconfirmed)
        PrintCandidate(candidate, status);
    else
        m_unconfirmed = std::move(candidate.text);
}

// Drops the lines at the end of a record that were in the file before its first line was written.
// If the older bytes are not known, drops the last line.
void LogFollower::DropOldLines(Candidate& candidate) const
{
    std::string& text = candidate.text;
    const auto begin = static_cast<std::size_t>(candidate.offset - m_restOffset);
    if (candidate.offset < m_restOffset || begin + text.size() > m_rest.size()) {
        text.resize(std::min(text.size(), text.rfind('\n')));
        return;
    }
    const std::string_view old = std::string_view(m_rest).substr(begin, text.size());
    const auto lastNew = std::mismatch(text.rbegin(), text.rend(), old.rbegin()).first;
    const auto newLength = static_cast<std::size_t>(text.rend() - lastNew);
    text.resize(std::min(text.size(), text.find('\n', std::max<std::size_t>(newLength, 1) - 1)));
}

} // namespace Tool
