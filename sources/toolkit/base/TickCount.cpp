#include "toolkit/base/TickCount.h"

#include <sys/times.h>
#include <unistd.h>

namespace Toolkit::Base {

unsigned int GetTickCount()
{
    constexpr long msPerSecond = 1000;

    static const auto uMsMulitplier =
        static_cast<unsigned int>(msPerSecond / ::sysconf(_SC_CLK_TCK));
    // Only the clock is wanted: filling in the times of the process costs five times as much.
    return static_cast<unsigned int>(::times(nullptr)) * uMsMulitplier;
}

} // namespace Toolkit::Base
