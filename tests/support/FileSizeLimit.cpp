#include "support/FileSizeLimit.h"

#include <gtest/gtest.h>

namespace Toolkit::TestSupport {

FileSizeLimit::FileSizeLimit(std::size_t sizeBytes)
{
    // By default, the first write that starts at or beyond the limit raises SIGXFSZ, which kills
    // the process.
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    ::sigaction(SIGXFSZ, &ignore, &m_oldAction);

    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &m_oldLimit), 0);
    rlimit limit = m_oldLimit;
    limit.rlim_cur = sizeBytes;
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
}

FileSizeLimit::~FileSizeLimit()
{
    ::setrlimit(RLIMIT_FSIZE, &m_oldLimit);
    ::sigaction(SIGXFSZ, &m_oldAction, nullptr);
}

} // namespace Toolkit::TestSupport
