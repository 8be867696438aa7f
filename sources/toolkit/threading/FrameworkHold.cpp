#include "toolkit/threading/FrameworkHold.h"

#include "toolkit/framework/Framework.h"

#include <unistd.h>

namespace Toolkit {

FrameworkHold::FrameworkHold() : m_holder(Framework::Start() ? ::getpid() : 0) {}

FrameworkHold::~FrameworkHold()
{
    if (m_holder == ::getpid())
        Framework::Stop();
}

} // namespace Toolkit
