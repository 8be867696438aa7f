#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace Tool {

/// Milliseconds since 1970.
using WallTime = std::int64_t;

/// Converts the tick counts of a log, which are milliseconds since the machine started, to the time
/// of day.
class LogClock {
public:
    /// A clock for a log whose times are unknown.
    LogClock() = default;

    /// A clock that knows the time only if `newestTick` matches the time at which the file was last
    /// written: then the log was written on this machine since it started.
    LogClock(std::uint32_t newestTick, const struct stat& file);

    /// Returns the time of a tick count; empty if it is not known.
    std::optional<WallTime> FindTime(std::uint32_t tick) const;

private:
    std::optional<WallTime> m_newestTime;
    std::uint32_t m_newestTick = 0;
};

/// Formats a time in the local time zone: "2009-03-05 06:04:09".
std::string FormatTime(std::time_t time);

} // namespace Tool
