#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <sys/stat.h>

#include "Descriptor.h"
#include "LogPrinter.h"

namespace Tool {

/// Where the next line of a log will be written.
struct LogPosition {
    off_t offset = 0;
    off_t length = 0; ///< Of the file when it was read.
    std::string head; ///< How the file began then.
    std::string tail; ///< What was before `offset`.
    std::optional<std::uint32_t> newestTick;
};

/// The first bytes of a file, which a wrap changes first.
std::string ReadHead(int file);

/// The last bytes before `position`, which a wrap does not change.
std::string ReadTail(int file, off_t position);

/// Prints the lines that are added to one log file, which may wrap around or be truncated.
class LogFollower {
public:
    LogFollower(Descriptor file, const LogPosition& position, LogPrinter& printer);

    /// Prints what was written since the last call.
    void Poll();

    ino_t Inode() const { return m_inode; }

    /// Whether the file has no name any more.
    bool IsRemoved() const { return m_isRemoved; }

private:
    struct Candidate {
        std::string text;
        off_t offset = 0;
        bool isEnded = false;
    };
    // Lines that were read and are not printed yet. The newest line waits until the one after it is
    // known, because the rest of an old line may follow it. A line that is old waits too: it is
    // only late if a new line follows.
    struct Pending {
        std::optional<Candidate> newest;
        std::optional<Candidate> old;
    };

    bool HasChanged(const struct stat& status);
    void FollowTruncation(off_t size);
    bool IsRestarted() const;
    void GoToBeginning(const struct stat& status);
    void KeepHead(std::string head);
    void PrintNew(const struct stat& status, bool isWholeRound);
    bool Take(const LogRecord& record, Pending& pending, const struct stat& status);
    bool IsNew(const LogRecord& record) const;
    void MeasureRound(const LogHeader& oldLine);
    void Confirm(const Candidate& candidate, const struct stat& status);
    void Settle(Candidate candidate, const struct stat& status, bool isWholeRound);

    Descriptor m_file;
    LogPrinter& m_printer;
    off_t m_position;
    std::optional<std::uint32_t> m_newestTick;
    std::int64_t m_roundMs = 0; // by how much the line after m_position is older than the newest
    std::string m_head;         // the first line of the file, which a wrap changes
    std::string m_tail;         // what is before m_position
    std::string m_unconfirmed;  // a line that may not be whole yet
    struct timespec m_written {};
    off_t m_size = -1;
    off_t m_knownLength; // of the file, when its lines were read before
    ino_t m_inode = 0;
    bool m_isRemoved = false;
};

} // namespace Tool
