// A plug-in that needs a function that no library defines.

#include "PlugIn.h"

extern "C" const HostPlugIn::PlugIn* GetTideTable() noexcept;

const HostPlugIn::PlugIn* GetHostPlugIn() noexcept
{
    return GetTideTable();
}
