#include "toolkit/threading/FrameworkHold.h"

#include "toolkit/threading/Framework.Private.h"

namespace Toolkit {

FrameworkHold::FrameworkHold() : m_isHeld(Framework::Start()) {}

FrameworkHold::~FrameworkHold()
{
    if (m_isHeld)
        Framework::Stop();
}

} // namespace Toolkit
