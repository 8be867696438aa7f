#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <sys/stat.h>

#include "Descriptor.h"
#include "LogPrinter.h"

namespace Tool {

/// Where the next line of a log will be written.
struct LogPosition {
    off_t offset = 0;
    off_t length = 0;                        ///< The length of the file when it was read.
    std::string head;                        ///< The first bytes of the file when it was read.
    std::string tail;                        ///< The last bytes before `offset`.
    std::string rest;                        ///< See ReadRest().
    std::optional<std::uint32_t> newestTick; ///< Empty if no line has a tick count.
};

/// Returns the first bytes of a file, which the logger overwrites first when the log wraps.
std::string ReadHead(int file);

/// Returns the last bytes before `position`. After a wrap, the logger overwrites them last.
std::string ReadTail(int file, off_t position);

/// Returns the bytes after `position`, the first ones to be overwritten. Empty if the file may have
/// changed since `status` was read.
std::string ReadRest(int file, off_t position, const struct stat& status);

/// Prints the lines that are added to one log file, which may wrap around or be truncated.
class LogFollower {
public:
    LogFollower(Descriptor file, const LogPosition& position, LogPrinter& printer);

    /// Prints the new lines. A line that may be incomplete or out of order waits for a later call.
    void Poll();

    ino_t GetInode() const { return m_inode; }

    /// Whether the last Poll() found that the file was deleted.
    bool IsRemoved() const { return m_isRemoved; }

private:
    // A copy of a record, because the reader reuses its buffer.
    struct Candidate {
        std::string text;
        off_t offset = 0;
        bool isEnded = false;
    };
    // Lines that were read but not printed yet. The newest line waits until the next one is known,
    // because the end of an overwritten line may follow it and look like part of it. A line that
    // looks old waits too: if a new line follows it, it is new as well, and its thread was merely
    // slow to write it.
    struct Pending {
        std::optional<Candidate> newest;
        std::optional<Candidate> maybeOld;
    };

    bool UpdateStatus(const struct stat& status);
    void FollowTruncation(off_t size);
    bool IsRewritten() const;
    void FollowWrap(const struct stat& status);
    void SetHead(std::string head);
    void SetRest(std::string rest);
    void PrintNewLines(const struct stat& status, bool isRoundComplete);
    bool HandleRecord(const LogRecord& record, Pending& pending, const struct stat& status);
    bool IsNew(const LogRecord& record) const;
    void MeasureRound(const LogHeader& oldLine);
    void PrintCandidate(const Candidate& candidate, const struct stat& status);
    void HandleNewest(Candidate candidate, const struct stat& status, bool isRoundComplete);
    void DropOldLines(Candidate& candidate) const;

    Descriptor m_file;
    LogPrinter& m_printer;
    off_t m_position;
    std::optional<std::uint32_t> m_newestTick;
    std::int64_t m_roundMs = 0;   // how much older the line after m_position is than the newest one
    std::string m_head;           // the first line of the file, which a wrap changes
    std::string m_tail;           // the last bytes before m_position
    std::string m_rest;           // the older bytes after m_restOffset; see ReadRest()
    off_t m_restOffset = 0;       // m_position when m_rest was read
    std::string m_unconfirmed;    // a line that may still be incomplete
    struct timespec m_written {}; // the modification time at the last Poll()
    off_t m_size = -1;            // the length at the last Poll()
    off_t m_knownLength;          // the length of the file when its lines were last read
    ino_t m_inode = 0;
    bool m_isRemoved = false;
};

} // namespace Tool
