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
    std::optional<std::uint32_t> newestTick;
};

/// The first bytes of a file, which a wrap changes first.
std::string ReadHead(int file);

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

    bool HasChanged(const struct stat& status);
    void FollowTruncation(off_t size);
    bool IsHeadChanged() const;
    void KeepHead(std::string head);
    void PrintNew(const struct stat& status);
    bool IsNew(const LogRecord& record) const;
    void Confirm(const Candidate& candidate, const struct stat& status);
    void Settle(Candidate candidate, const struct stat& status);

    Descriptor m_file;
    LogPrinter& m_printer;
    off_t m_position;
    std::optional<std::uint32_t> m_newestTick;
    std::int64_t m_roundMs;    // by how much the line after m_position is older than the newest
    std::string m_head;        // how the file begins, up to m_position
    std::string m_unconfirmed; // a line that may not be whole yet
    struct timespec m_written {};
    off_t m_size = -1;
    off_t m_knownLength; // of the file, when its lines were read before
    ino_t m_inode = 0;
    bool m_isRemoved = false;
};

} // namespace Tool
