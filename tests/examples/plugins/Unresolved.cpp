// A plug-in that needs a function which no library has.

#include "PlugIn.h"

extern "C" const HostPlugIn::PlugIn* GetTideTable() noexcept;

const HostPlugIn::PlugIn* GetHostPlugIn() noexcept
{
    return GetTideTable();
}
