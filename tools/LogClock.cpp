#include "LogClock.h"

#include <cstdlib>
#include <ctime>
#include <toolkit/system/TickCount.h>

#include "FileTime.h"

namespace Tool {
namespace {

constexpr WallTime c_msPerSecond = 1000;
constexpr WallTime c_nsPerMs = 1000000;

// How far the time computed from the tick count may be from the modification time of the file: a
// line may be written late, and the clock may have been adjusted.
constexpr WallTime c_toleranceMs = 3000;

// A tick count less than this (about 3 days) after the newest one belongs to a later line, any
// other to an older line.
constexpr std::uint32_t c_maxFutureMs = 1U << 28;

WallTime ToMilliseconds(const timespec& time)
{
    return time.tv_sec * c_msPerSecond + time.tv_nsec / c_nsPerMs;
}

WallTime ReadClock(clockid_t clock)
{
    timespec time{};
    ::clock_gettime(clock, &time);
    return ToMilliseconds(time);
}

// Returns how many milliseconds the machine has slept since it started.
WallTime MeasureSleep()
{
#ifdef CLOCK_BOOTTIME
    return ReadClock(CLOCK_BOOTTIME) - ReadClock(CLOCK_MONOTONIC);
#else
    return 0;
#endif
}

} // namespace

LogClock::LogClock(std::uint32_t newestTick, const struct stat& status) : m_newestTick(newestTick)
{
    const WallTime written = ToMilliseconds(GetModificationTime(status));
    const std::uint32_t age = Toolkit::GetTickCount() - newestTick;
    const WallTime timeByTick = ReadClock(CLOCK_REALTIME) - age;
    const WallTime difference = timeByTick - written;
    // If the machine slept after the line was written, the time computed from the tick count is too
    // late.
    if (std::abs(difference) <= c_toleranceMs)
        m_newestTime = timeByTick;
    else if (difference > 0 && difference <= MeasureSleep() + c_toleranceMs)
        m_newestTime = written;
}

std::optional<WallTime> LogClock::FindTime(std::uint32_t tick) const
{
    if (!m_newestTime)
        return {};
    const std::uint32_t later = tick - m_newestTick;
    if (later < c_maxFutureMs)
        return *m_newestTime + later;
    return *m_newestTime - static_cast<std::uint32_t>(m_newestTick - tick);
}

std::string FormatTime(std::time_t time)
{
    std::tm parts{};
    ::localtime_r(&time, &parts);
    char text[64];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts)};
}

} // namespace Tool
