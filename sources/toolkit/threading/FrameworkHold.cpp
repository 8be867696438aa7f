#include "toolkit/threading/FrameworkHold.h"

#include "toolkit/framework/Framework.h"

namespace Toolkit {

FrameworkHold::FrameworkHold() : m_isHeld(Framework::Start()) {}

FrameworkHold::~FrameworkHold()
{
    if (m_isHeld)
        Framework::Stop();
}

} // namespace Toolkit
