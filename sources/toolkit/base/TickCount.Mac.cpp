#include "toolkit/base/TickCount.h"

#include <sys/times.h>
#include <unistd.h>

namespace Toolkit::Base {

unsigned int GetTickCount()
{
    constexpr long msPerSecond = 1000;

    static const auto uMsMulitplier =
        static_cast<unsigned int>(msPerSecond / ::sysconf(_SC_CLK_TCK));
    // On macOS, times(3) writes through a null pointer.
    struct tms unused {};
    return static_cast<unsigned int>(::times(&unused)) * uMsMulitplier;
}

} // namespace Toolkit::Base
