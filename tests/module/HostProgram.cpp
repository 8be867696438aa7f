// A program with its own application object, during whose lifetime it starts and stops the library.

#include "toolkit/module/LibModuleManager.h"

#include <wx/app.h>
#include <wx/init.h>

#include <cstdio>

namespace {

class Host : public wxAppConsole {
public:
    bool OnInit() override { return true; }
};

void TellWhoseApplicationRuns()
{
    const bool isOwn = dynamic_cast<Host*>(wxAppConsole::GetInstance()) != nullptr;
    std::puts(isOwn ? "the host's own" : "somebody else's");
}

} // namespace

int main(int argc, char** argv)
{
    wxAppConsole::SetInstance(new Host());
    if (!wxEntryStart(argc, argv) || !wxAppConsole::GetInstance()->CallOnInit())
        return 1;
    TellWhoseApplicationRuns();
    Toolkit::LibModuleManager::GetInstance()->Initialize(true);
    TellWhoseApplicationRuns();
    Toolkit::LibModuleManager::GetInstance()->Release(true);
    TellWhoseApplicationRuns();
    wxEntryCleanup();
    return 0;
}
