#include "toolkit/system/InheritedDescriptors.Private.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Toolkit {

void CloseInheritedDescriptorsOnExec()
{
    constexpr unsigned int first = STDERR_FILENO + 1;
    constexpr unsigned int last = ~0u;
    if (::syscall(SYS_close_range, first, last, CLOSE_RANGE_CLOEXEC) == 0)
        return;
    // Kernels before 5.11 lack CLOSE_RANGE_CLOEXEC.
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    for (int descriptor = first; static_cast<rlim_t>(descriptor) < limit.rlim_cur; ++descriptor)
        ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

} // namespace Toolkit
