#include "toolkit/threading/FrameworkHold.h"

#include "toolkit/framework/Framework.h"

#include <new>
#include <unistd.h>

namespace Toolkit {

FrameworkHold::FrameworkHold() : m_holder(Framework::Start() ? ::getpid() : 0)
{
    // If wxWidgets is not started, the constructor of wxThread would crash.
    if (m_holder == 0 && !Framework::IsStarted())
        throw std::bad_alloc();
}

FrameworkHold::~FrameworkHold()
{
    if (m_holder == ::getpid())
        Framework::Stop();
}

} // namespace Toolkit
