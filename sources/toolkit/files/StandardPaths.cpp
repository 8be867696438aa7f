#include "toolkit/base/ExecutablePath.h"
#include "toolkit/base/UserAccount.h"
#include "toolkit/files/FallbackPaths.Private.h"
#include "toolkit/files/StandardPaths.Private.h"
#include "toolkit/framework/Text.h"

#include <wx/app.h>
#include <wx/filename.h>
#include <wx/stdpaths.h>

namespace Toolkit::StandardPaths {
namespace {

// Without an application object the framework's queries crash. With one they decode names in the C
// locale's encoding, which in a host that never called setlocale() loses all but ASCII.
bool FrameworkCanTell()
{
    return wxAppConsole::GetInstance() &&
           Framework::ToText(wxStandardPaths::Get().GetExecutablePath()) ==
               Base::GetExecutablePath() &&
           Framework::ToText(wxFileName::GetHomeDir()) == Base::GetHomeDirectory();
}

} // namespace

TString<wchar_t> ExecutablePath()
{
    const TString<wchar_t> path = Base::GetExecutablePath();
    return path.empty() && wxAppConsole::GetInstance()
               ? Framework::ToText(wxStandardPaths::Get().GetExecutablePath())
               : path;
}

TString<wchar_t> DataDirectory()
{
    return FrameworkCanTell() ? Framework::ToText(wxStandardPaths::Get().GetDataDir())
                              : FallbackPaths::DataDirectory();
}

TString<wchar_t> ResourcesDirectory()
{
    return FrameworkCanTell() ? Framework::ToText(wxStandardPaths::Get().GetResourcesDir())
                              : FallbackPaths::ResourcesDirectory();
}

TString<wchar_t> UserLocalDataDirectory()
{
    return FrameworkCanTell() ? Framework::ToText(wxStandardPaths::Get().GetUserLocalDataDir())
                              : FallbackPaths::UserLocalDataDirectory();
}

TString<wchar_t> DocumentsDirectory()
{
    return FrameworkCanTell() ? Framework::ToText(wxStandardPaths::Get().GetDocumentsDir())
                              : FallbackPaths::DocumentsDirectory();
}

} // namespace Toolkit::StandardPaths
