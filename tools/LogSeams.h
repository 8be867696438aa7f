#pragma once

#include <cstdint>
#include <optional>
#include <sys/types.h>
#include <vector>

#include "LogReader.h"

namespace Tool {

/// A part of a log whose lines are in time order.
struct LogPart {
    off_t begin;
    off_t end;
};

/// Finds the seam of a log that wraps around in place: where the newest line is followed by an
/// older one.
///
/// At a seam the tick count steps back by about as much as it advances in a round, which is one
/// pass of the logger through the file. Lines of several threads cause steps back too, but these
/// are smaller, or do not reach back before the first line of their round. If no step back is
/// clear, the file is treated as a ring, and the widest step back, including the one from the last
/// line to the first, is the seam. If a round was shorter than the previous one, what is left of
/// the previous one begins at another seam.
class LogSeams {
public:
    /// Adds the next record of the file.
    void Add(const LogRecord& record);

    /// Returns the parts of a file of `length` bytes, the oldest first.
    std::vector<LogPart> ListParts(off_t length) const;

    /// Returns the tick count of the newest line; empty if no line has one.
    std::optional<std::uint32_t> GetNewestTick() const;

private:
    // Times are in milliseconds since the first line with a tick count.
    struct Seam {
        off_t offset;            // where the older lines begin
        std::int64_t drop;       // by how many milliseconds the time steps back at the seam
        std::int64_t timeBefore; // of the last line before the seam
        std::int64_t partBegin;  // the time of the first line of the part before the seam
        std::int64_t timeAfter;  // of the first line after the seam
        bool isCut;              // whether the older lines begin with the rest of a cut line
    };

    static std::int64_t GetSlack(const Seam& seam);
    static bool IsPlausible(const Seam& seam);
    void AddTick(off_t offset, std::uint32_t tick, bool isCut);
    void UpdateClearSeams(Seam seam);
    std::vector<Seam> ChooseSeams() const;

    bool m_hasTick = false;
    std::uint32_t m_firstTick = 0;
    std::uint32_t m_lastTick = 0;
    std::int64_t m_time = 0;        // of the last line, as in Seam; does not wrap around
    off_t m_cutOffset = -1;         // of the last cut line since the last tick; -1 if there is none
    std::vector<Seam> m_clearSeams; // steps back that cannot come from several threads
    Seam m_widestDrop{};            // the widest step back
    Seam m_widestGap{};             // the widest step forward; its `drop` is negative
};

} // namespace Tool
