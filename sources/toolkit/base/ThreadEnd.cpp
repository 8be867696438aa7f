#include "toolkit/base/ThreadEnd.h"

#include <execinfo.h>

namespace Toolkit::Base {

void PrepareThreadEnd()
{
    // backtrace(3) loads the same code.
    void* frame = nullptr;
    ::backtrace(&frame, 1);
}

} // namespace Toolkit::Base
