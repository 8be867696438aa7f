// A plug-in that reports that it is unusable.

#include "PlugIn.h"

const HostPlugIn::PlugIn* GetHostPlugIn() noexcept
{
    return nullptr;
}
