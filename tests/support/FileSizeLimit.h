#pragma once

#include <cstddef>
#include <signal.h>
#include <sys/resource.h>

namespace Toolkit::TestSupport {

/// Limits the files that this process and the programs that it starts can write to `sizeBytes`
/// bytes, to simulate a full disk. Writing beyond that fails with EFBIG. The destructor restores
/// the old limit.
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
