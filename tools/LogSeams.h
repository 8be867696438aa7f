#pragma once

#include <cstdint>
#include <optional>
#include <sys/types.h>
#include <vector>

#include "LogReader.h"

namespace Tool {

/// A part of a log in which lines follow each other in time.
struct LogPart {
    off_t begin;
    off_t end;
};

/// Finds where the newest line of a log that wraps around in place is followed by an older one.
///
/// At such a seam the tick count steps back, by about as much as it steps forward in a whole round.
/// Lines of several threads step back too, but by less, or not to before the first line of their
/// round. Where no step back is that clear, the file is treated as a ring, and the widest one, from
/// the last line to the first included, is the seam. Where a round was shorter than the one before
/// it, the rest of that one makes another seam.
class LogSeams {
public:
    /// Adds the next record of the file.
    void Add(const LogRecord& record);

    /// The parts of a file of `length` bytes, the oldest first.
    std::vector<LogPart> ListParts(off_t length) const;

    /// The tick count of the newest line; empty when no line has one.
    std::optional<std::uint32_t> NewestTick() const;

private:
    struct Seam {
        off_t offset;        // where the older lines begin
        std::int64_t drop;   // by how much the time steps back there
        std::int64_t newest; // the time of the line before it
        std::int64_t begin;  // the time of the first line of the part that ends there
        std::int64_t older;  // the time of the first line after it
        bool isCut;          // whether the older lines begin with the rest of one
    };

    static std::int64_t FindSlack(const Seam& seam);
    static bool IsTooWideForMost(const Seam& seam);
    void AddTick(off_t offset, std::uint32_t tick, bool isCut);
    void AddClear(Seam seam);
    std::vector<Seam> Seams() const;

    bool m_hasTick = false;
    std::uint32_t m_firstTick = 0;
    std::uint32_t m_lastTick = 0;
    std::int64_t m_time = 0;   // since the first line; does not wrap around
    off_t m_cutOffset = -1;    // of a line that was cut, since the last tick; -1 for none
    std::vector<Seam> m_clear; // steps back that threads do not explain
    Seam m_widestDrop{};       // of all steps back
    Seam m_widestGap{};        // of all steps forward, with `drop` negative
};

} // namespace Tool
