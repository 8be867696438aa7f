// A plug-in for another version of the interface: the host may read only the version.

#include "PlugIn.h"

const HostPlugIn::PlugIn* GetHostPlugIn() noexcept
{
    static const HostPlugIn::PlugIn plugIn{HostPlugIn::c_interfaceVersion + 1, nullptr, nullptr,
                                           nullptr, 1000};
    return &plugIn;
}
