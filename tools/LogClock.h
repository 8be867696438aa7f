#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace Tool {

/// Milliseconds since the Unix epoch.
using WallTime = std::int64_t;

/// Converts the tick counts of a log to wall-clock time. Tick counts are milliseconds, modulo 2^32,
/// since a moment that depends on the last boot; they do not advance while the machine sleeps.
class LogClock {
public:
    /// A clock for a log whose times are unknown.
    LogClock() = default;

    /// A clock for a log whose newest line has the tick count `newestTick`. Times are known only if
    /// that tick count fits the modification time in `status`, which is that of the file. If it
    /// does not, the log is from another machine, or predates the last boot.
    LogClock(std::uint32_t newestTick, const struct stat& status);

    /// Returns the time of a tick count; empty if it is not known.
    std::optional<WallTime> FindTime(std::uint32_t tick) const;

private:
    std::optional<WallTime> m_newestTime;
    std::uint32_t m_newestTick = 0;
};

/// Formats a time in seconds since the Unix epoch in the local time zone: "2009-03-05 06:04:09".
std::string FormatTime(std::time_t time);

} // namespace Tool
