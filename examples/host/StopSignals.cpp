#include "StopSignals.h"

#include <wx/app.h>

#include <csignal>
#include <utility>

namespace {

constexpr int c_signals[] = {SIGINT, SIGTERM, SIGHUP};

const std::function<void()>* s_onSignal = nullptr;

bool IsIgnored(int signal)
{
    struct sigaction action = {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void RestoreDefaults()
{
    for (const int signal : c_signals) {
        if (!IsIgnored(signal))
            std::signal(signal, SIG_DFL);
    }
}

// Runs on the thread of the event loop: the real signal handler belongs to wxWidgets, which calls
// this later.
void OnSignal(int)
{
    RestoreDefaults();
    if (s_onSignal)
        (*s_onSignal)();
}

} // namespace

StopSignals::StopSignals(std::function<void()> onSignal) : m_onSignal(std::move(onSignal))
{
    s_onSignal = &m_onSignal;
    for (const int signal : c_signals) {
        if (!IsIgnored(signal))
            wxAppConsole::GetInstance()->SetSignalHandler(signal, OnSignal);
    }
}

StopSignals::~StopSignals()
{
    RestoreDefaults();
    s_onSignal = nullptr;
}
