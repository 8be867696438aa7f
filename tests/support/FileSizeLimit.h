#pragma once

#include <cstddef>
#include <signal.h>
#include <sys/resource.h>

namespace Toolkit::TestSupport {

/// Lets this process, and the programs that it starts, write files of at most `sizeBytes` bytes.
/// Simulates a full disk.
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
