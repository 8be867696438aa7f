#pragma once

#include <cstddef>
#include <signal.h>
#include <sys/resource.h>

namespace Toolkit::TestSupport {

/// Limits each file that is written by this process, or by a program that it starts, to `sizeBytes`
/// bytes. Simulates a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(std::size_t sizeBytes);
    ~FileSizeLimit();

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_oldLimit{};
    struct sigaction m_oldAction {};
};

} // namespace Toolkit::TestSupport
