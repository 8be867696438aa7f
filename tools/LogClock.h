#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace Tool {

/// Milliseconds since 1970.
using WallTime = std::int64_t;

/// Works out the time of day from the tick counts of a log, which are milliseconds since the
/// machine started.
class LogClock {
public:
    /// Knows no time.
    LogClock() = default;

    /// Knows the time when the log's newest line matches the time at which the file was last
    /// written, on this machine since it started.
    LogClock(std::uint32_t newestTick, const struct stat& file);

    /// Empty when the time is not known.
    std::optional<WallTime> FindTime(std::uint32_t tick) const;

private:
    std::optional<WallTime> m_newestTime;
    std::uint32_t m_newestTick = 0;
};

/// "2009-03-05 06:04:09" in the local time zone.
std::string FormatTime(std::time_t time);

} // namespace Tool
