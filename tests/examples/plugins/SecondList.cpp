// A plug-in whose command has the same name as another plug-in's command.

#include "PlugIn.h"

using namespace HostPlugIn;

namespace {

bool List(CommandRun& run)
{
    return run.WriteLine(L"the second one");
}

constexpr Command c_commands[] = {
    {L"list", L"has the name of another command", nullptr, 0, RunGuarded<List>}};

} // namespace

const PlugIn* GetHostPlugIn() noexcept
{
    static const PlugIn plugIn{c_interfaceVersion, L"second", nullptr, c_commands, 1};
    return &plugIn;
}
