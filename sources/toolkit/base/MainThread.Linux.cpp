#include "toolkit/base/MainThread.h"

#include <unistd.h>

namespace Toolkit::Base {

bool IsFirstThread()
{
    return ::gettid() == ::getpid();
}

} // namespace Toolkit::Base
