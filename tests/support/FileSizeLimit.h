#pragma once

#include <cstddef>
#include <signal.h>
#include <sys/resource.h>

namespace Toolkit::TestSupport {

/// Limits the size of the files that this process writes to `size` bytes, to simulate a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(std::size_t size);
    ~FileSizeLimit();

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_oldLimit{};
    struct sigaction m_oldAction {};
};

} // namespace Toolkit::TestSupport
