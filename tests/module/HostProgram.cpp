// A program with its own wxWidgets application object. Starts and stops the library while that
// object exists. Before the start, after it and after the stop, prints whether wxWidgets still uses
// the object.

#include "toolkit/module/LibModuleManager.h"

#include <wx/app.h>
#include <wx/init.h>

#include <cstdio>

namespace {

class Host : public wxAppConsole {
public:
    bool OnInit() override { return true; }
};

void PrintWhoseApplicationRuns()
{
    const bool isOwn = dynamic_cast<Host*>(wxAppConsole::GetInstance()) != nullptr;
    std::puts(isOwn ? "the host's own" : "not the host's");
}

} // namespace

int main(int argc, char** argv)
{
    wxAppConsole::SetInstance(new Host());
    if (!wxEntryStart(argc, argv) || !wxAppConsole::GetInstance()->CallOnInit())
        return 1;
    PrintWhoseApplicationRuns();
    Toolkit::LibModuleManager::GetInstance()->Initialize(true);
    PrintWhoseApplicationRuns();
    Toolkit::LibModuleManager::GetInstance()->Release(true);
    PrintWhoseApplicationRuns();
    wxEntryCleanup();
    return 0;
}
