#pragma once

#include <cstdint>
#include <optional>
#include <sys/types.h>
#include <vector>

#include "LogReader.h"

namespace Tool {

/// A part of a log whose lines are in chronological order.
struct LogPart {
    off_t begin;
    off_t end;
};

/// Finds the seam of a log that wraps around in place: where the newest line is followed by an
/// older one.
///
/// A round is one pass of the logger through the file. At a seam the tick count jumps back by about
/// as much as it advances in a round. Threads that write out of order make it jump back too, but by
/// less. A clear seam is a jump back by at least a second, or to the first line of its round or
/// before it. If a round is shorter than the one before it, leftover lines of the older round
/// follow, after a second seam.
///
/// Without a clear seam, the file is treated as a ring: the largest jump back is the seam, unless
/// it is the one from the last line to the first. It must be at least 100 ms or cut a line. A jump
/// back by 2^31 ms or more looks like one forward, and is recognised as well.
class LogSeams {
public:
    /// Adds the next record of the file.
    void Add(const LogRecord& record);

    /// Returns the parts of a file of `length` bytes, oldest first.
    std::vector<LogPart> ListParts(off_t length) const;

    /// Returns the tick count of the newest line; empty if no line has one.
    std::optional<std::uint32_t> GetNewestTick() const;

private:
    // Times are in milliseconds since the first line with a tick count.
    struct Seam {
        off_t offset;            // where the older lines begin
        std::int64_t drop;       // how far the time jumps back at the seam
        std::int64_t timeBefore; // time of the last line before the seam
        std::int64_t timeOfPart; // time of the first line of the part before the seam
        std::int64_t timeAfter;  // time of the first line after the seam
        bool isCut;              // whether the older lines begin with the end of a cut line
    };

    static std::int64_t GetSlack(const Seam& seam);
    static bool IsPlausible(const Seam& seam);
    void AddTick(off_t offset, std::uint32_t tick, bool isCut);
    void UpdateClearSeams(Seam seam);
    std::vector<Seam> ChooseSeams() const;

    bool m_hasTick = false;
    std::uint32_t m_firstTick = 0;
    std::uint32_t m_lastTick = 0;
    std::int64_t m_time = 0; // time of the last line; does not wrap around
    // Offset of a line after the last tick that may be cut; -1 if there is none.
    off_t m_cutOffset = -1;
    std::vector<Seam> m_clearSeams; // jumps back too large for threads that write out of order
    Seam m_largestDrop{};
    Seam m_largestRise{}; // its `drop` is negative
};

} // namespace Tool
