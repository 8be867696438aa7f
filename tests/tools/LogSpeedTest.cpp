#include "support/Sanitizers.h"
#include "support/Soak.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>

#include "ToolFixture.h"

namespace Toolkit::TestSupport {
namespace {

constexpr unsigned long long c_megabyte = 1000000;

class LogSpeedTest : public ToolFixture {
protected:
    // Writes a wrapped log, with the newer half first in the file. Returns the path of the file.
    std::string WriteLog(unsigned long long bytes) const
    {
        const std::string path = PathOf("large.qvlog");
        std::ofstream file(path, std::ios::binary);
        unsigned long long written = 0;
        for (unsigned int number = 0; written < bytes; ++number) {
            const bool isNewer = written < bytes / 2;
            const unsigned int tick = (isNewer ? 900000000 : 100000000) + number;
            const std::string line = std::to_string(number % 5) + " " + std::to_string(tick) +
                                     " : 64 : DoWork : a message of usual length, number " +
                                     std::to_string(number) + "\n";
            file << line;
            written += line.size();
        }
        return path;
    }
};

// Measures processor time, on which other programs have little effect.
TEST_F(LogSpeedTest, ReadsALargeLogFastAndInLittleMemory)
{
    // The limit is lower for a short sample, because starting the process takes a larger share of
    // its time.
    const double minBytesPerSecond = SoakRounds(50, 200) * 1e6;
    constexpr long maxKilobytes = 50000;
    const auto megabytes = static_cast<unsigned long long>(SoakRounds(20, 1000));
    const std::string path = WriteLog(megabytes * c_megabyte);

    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [&usage] {
        return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
               static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    };
    const double before = seconds();
    ASSERT_EQ(RunInShell("$toolkit log $dir/large.qvlog > /dev/null").exitCode, 0);
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const double secondsUsed = seconds() - before;

    const double speed = static_cast<double>(megabytes * c_megabyte) / secondsUsed;
    Covered(std::to_string(megabytes) + " MB at " +
            std::to_string(static_cast<int>(speed / c_megabyte)) + " MB/s in " +
            std::to_string(usage.ru_maxrss / 1000) + " MB of memory");
#ifndef TOOLKIT_SANITIZER
    EXPECT_LT(usage.ru_maxrss, maxKilobytes);
    EXPECT_GT(speed, minBytesPerSecond);
#else
    static_cast<void>(minBytesPerSecond);
    static_cast<void>(maxKilobytes);
#endif
}

} // namespace
} // namespace Toolkit::TestSupport
