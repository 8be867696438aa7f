#include "toolkit/base/ThreadEnd.h"

#include <execinfo.h>

namespace Toolkit::Base {

void PrepareThreadEnd()
{
    // A walk up the stack needs the same code.
    void* frame = nullptr;
    ::backtrace(&frame, 1);
}

} // namespace Toolkit::Base
