#include "StopSignals.h"

#include <csignal>

namespace Tool {
namespace {

constexpr int c_signals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t s_signal = 0;

// Leaves ignored signals ignored.
void SetHandler(int signal, void (*handler)(int), int flags)
{
    struct sigaction action = {};
    if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
        return;
    action.sa_handler = handler;
    action.sa_flags = flags;
    ::sigaction(signal, &action, nullptr);
}

} // namespace

// Without SA_RESTART, so that signals interrupt blocking calls.
StopSignals::StopSignals()
{
    for (const int signal : c_signals)
        SetHandler(
            signal, [](int received) { s_signal = received; }, static_cast<int>(SA_RESETHAND));
}

StopSignals::~StopSignals()
{
    for (const int signal : c_signals)
        SetHandler(signal, SIG_DFL, 0);
}

bool StopSignals::IsRequested()
{
    return s_signal != 0;
}

void StopSignals::EndIfRequested()
{
    if (s_signal == 0)
        return;
    std::signal(s_signal, SIG_DFL);
    std::raise(s_signal);
}

} // namespace Tool
