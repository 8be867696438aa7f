// A plug-in that finds itself of no use.

#include "PlugIn.h"

const HostPlugIn::PlugIn* GetHostPlugIn() noexcept
{
    return nullptr;
}
