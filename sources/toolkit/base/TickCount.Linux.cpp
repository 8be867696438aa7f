#include "toolkit/base/TickCount.h"

#include <sys/times.h>
#include <unistd.h>

namespace Toolkit::Base {

unsigned int GetTickCount()
{
    constexpr long msPerSecond = 1000;

    static const auto uMsMulitplier =
        static_cast<unsigned int>(msPerSecond / ::sysconf(_SC_CLK_TCK));
    // TickCount: also filling in the process times takes six times as long.
    return static_cast<unsigned int>(::times(nullptr)) * uMsMulitplier;
}

} // namespace Toolkit::Base
