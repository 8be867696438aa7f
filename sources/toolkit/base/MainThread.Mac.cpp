#include "toolkit/base/MainThread.h"

#include <pthread.h>

namespace Toolkit::Base {

bool IsFirstThread()
{
    return ::pthread_main_np() != 0;
}

} // namespace Toolkit::Base
