// A plug-in of another version of the interface: what follows the version means nothing.

#include "PlugIn.h"

const HostPlugIn::PlugIn* GetHostPlugIn() noexcept
{
    static const HostPlugIn::PlugIn plugIn{HostPlugIn::c_interfaceVersion + 1, nullptr, nullptr,
                                           nullptr, 1000};
    return &plugIn;
}
