#include "toolkit/system/TickCount.h"

#include "toolkit/base/TickCount.h"

namespace Toolkit {

unsigned int GetTickCount()
{
    return Base::GetTickCount();
}

} // namespace Toolkit
