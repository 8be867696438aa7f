#include "toolkit/framework/Framework.h"

#include <wx/app.h>
#include <wx/init.h>

namespace Toolkit::Framework {
namespace {

// The application object that wxInitialize() makes knows no program arguments. One that the program
// runs itself has them, or a function that makes it.
bool ProgramRunsItsOwnApplication()
{
    const wxAppConsole* const application = wxAppConsole::GetInstance();
    return application && (application->argc > 0 || wxAppConsole::GetInitializerFunction());
}

} // namespace

bool Start()
{
    return !ProgramRunsItsOwnApplication() && wxInitialize();
}

void Stop()
{
    wxUninitialize();
}

} // namespace Toolkit::Framework
