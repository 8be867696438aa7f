#include "Facts.h"

#include <wx/version.h>

#include <toolkit/Toolkit.h>

#include "Terminal.h"

using namespace Toolkit;

namespace {

Text DescribePlatform()
{
    // Indexed by SystemInfo::Platform.
    const wchar_t* const families[] = {L"unknown", L"Windows", L"Mac", L"Unix"};

    const smart_ptr<SystemInfo> system = SystemInfo::GetInstance();
    return Text(families[system->GetPlatform()]) + L" " +
           StringConvert::UStringFromInt32(system->GetOSMajorVersion()) + L"." +
           StringConvert::UStringFromInt32(system->GetOSMinorVersion());
}

} // namespace

void PrintPaths()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    PrintRow(L"Application", paths->GetApplicationName());
    PrintRow(L"Unique name", paths->GetApplicationUniqueName());
    PrintRow(L"Application path", paths->GetApplicationPath());
    PrintRow(L"Configuration path", paths->GetConfigurationPath());
    PrintRow(L"Resources path", paths->GetApplicationRessourcesPath());
    PrintRow(L"Plug-ins path", paths->GetPluginsPath());
    PrintRow(L"Data path", paths->GetApplicationDataPath());
    PrintRow(L"Documents path", paths->GetDocumentsPath());
    PrintRow(L"Temporary path", paths->GetTempDir());
}

void PrintSystem()
{
    const bool isSecond = SingleApplicationInstance::GetInstance()->IsAlreadyRunning();
    PrintRow(L"Platform", DescribePlatform());
    PrintRow(L"Library version", Version::GetInstance()->ToString());
    PrintRow(L"wxWidgets version", wxVERSION_NUM_DOT_STRING_T);
    PrintRow(L"Already running", isSecond ? L"yes" : L"no");
}
