// The program that PathManagerProgramTest runs. Prints the paths of the path manager in UTF-8.

#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/module/LibModuleManager.h"

#include <wx/app.h>

#include <clocale>
#include <cstdio>
#include <cstring>

namespace {

using namespace Toolkit;

void Print(const char* what, const TString<wchar_t>& text)
{
    std::printf("%s: %s\n", what, UTF8::ToUTF8(text).c_str());
}

void PrintPaths(const PathManager& paths)
{
    Print("name", paths.GetApplicationName());
    Print("application", paths.GetApplicationPath());
    Print("configuration", paths.GetConfigurationPath());
    Print("data", paths.GetApplicationDataPath());
    Print("ressources", paths.GetApplicationRessourcesPath());
    Print("appearances", paths.GetAppearancesPath());
    Print("plugins", paths.GetPluginsPath());
    Print("documents", paths.GetDocumentsPath());
    Print("data directory", paths.GetDataDir());
    Print("user's directory", paths.GetUserLocalDataDir());
    Print("unique", paths.GetApplicationUniqueName());
}

} // namespace

// The argument "wxWidgets" starts wxWidgets first; "locale" sets the locale from the environment.
// An absolute path names another program, whose paths are printed instead. Any other argument
// becomes the application name in wxApp.
int main(int argc, char** argv)
{
    bool usesWxWidgets = false;
    const char* name = nullptr;
    const char* program = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "wxWidgets") == 0)
            usesWxWidgets = true;
        else if (std::strcmp(argv[i], "locale") == 0)
            std::setlocale(LC_ALL, "");
        else if (argv[i][0] == '/')
            program = argv[i];
        else
            name = argv[i];
    }
    if (usesWxWidgets)
        LibModuleManager::GetInstance()->Initialize(true);
    if (name) {
        wxAppConsole::GetInstance()->SetAppName(name);
        PathManager::ReleaseInstance();
    }
    PathManager::CreateInstance();
    if (program)
        PrintPaths(PathManager(UTF8::ToUNICODE(program)));
    else
        PrintPaths(*PathManager::GetInstance());
    PathManager::ReleaseInstance();
    if (usesWxWidgets)
        LibModuleManager::GetInstance()->Release(true);
    return 0;
}
