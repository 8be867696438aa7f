// A plug-in whose commands misbehave.

#include <iterator>
#include <stdexcept>
#include <toolkit/files/PathManager.h>
#include <toolkit/threading/Thread.h>

#include "PlugIn.h"

using namespace HostPlugIn;
using namespace Toolkit;

namespace {

// Runs until a file exists or the command is cancelled.
bool Wait(CommandRun& run)
{
    if (!run.WriteLine(L"half of it"))
        return false;
    for (unsigned long long round = 1; run.ReportProgress(round, 0, L"rounds"); ++round) {
        if (PathManager::FileExists(run.GetValue(L"until")))
            return run.WriteLine(L"the other half");
        Thread::Sleep(1);
    }
    return false;
}

// Never checks whether it has been cancelled.
bool WaitBlindly(CommandRun& run)
{
    run.WriteLine(L"half of it");
    while (!PathManager::FileExists(run.GetValue(L"until")))
        Thread::Sleep(1);
    return true;
}

bool ThrowError(CommandRun& run)
{
    run.WriteLine(L"something");
    throw std::runtime_error("thrown by a command");
}

bool ThrowNumber(CommandRun&)
{
    throw 1;
}

bool FailSilently(CommandRun&)
{
    return false;
}

constexpr Option c_options[] = {{L"until", Option::Path, true}};
constexpr Command c_commands[] = {
    {L"wait", L"waits until a file exists", c_options, std::size(c_options), RunGuarded<Wait>},
    {L"wait-blindly", L"waits until a file exists and cannot be cancelled", c_options,
     std::size(c_options), RunGuarded<WaitBlindly>},
    {L"throw-error", L"throws an error", nullptr, 0, RunGuarded<ThrowError>},
    {L"throw-number", L"throws a number", nullptr, 0, RunGuarded<ThrowNumber>},
    {L"fail-without-a-reason", L"fails without a reason", nullptr, 0, RunGuarded<FailSilently>},
};

} // namespace

const PlugIn* GetHostPlugIn() noexcept
{
    static const PlugIn plugIn{c_interfaceVersion, L"odd", nullptr, c_commands,
                               std::size(c_commands)};
    return &plugIn;
}
