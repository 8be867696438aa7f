#include "toolkit/framework/Framework.h"

#include <wx/app.h>
#include <wx/init.h>
#include <wx/thread.h>

#include <atomic>

namespace Toolkit::Framework {
namespace {

// Counts calls to Stop() on other threads, because wxWidgets shuts down only on the thread that it
// treats as the main one. The next Start(), or the next Stop() on that thread, makes up for them.
std::atomic<int> s_owedStops{0};

bool TakeOwedStop()
{
    int owed = s_owedStops;
    while (owed > 0 && !s_owedStops.compare_exchange_weak(owed, owed - 1)) {
    }
    return owed > 0;
}

} // namespace

// The application object that wxInitialize() creates has no program arguments unless the caller
// passes them. The program's own object has them, or is created by an initializer function.
bool DoesProgramRunItsOwnApplication()
{
    const wxAppConsole* const application = wxAppConsole::GetInstance();
    return application && (application->argc > 0 || wxAppConsole::GetInitializerFunction());
}

bool Start()
{
    return !DoesProgramRunItsOwnApplication() && (TakeOwedStop() || wxInitialize());
}

void Stop()
{
    if (!wxThread::IsMain()) {
        ++s_owedStops;
        return;
    }
    wxUninitialize();
    while (TakeOwedStop())
        wxUninitialize();
}

bool IsStarted()
{
    return wxAppConsole::GetInstance() != nullptr;
}

} // namespace Toolkit::Framework
