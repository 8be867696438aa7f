#include "toolkit/base/ExecutablePath.h"
#include "toolkit/base/UserAccount.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/files/FallbackPaths.Private.h"
#include "toolkit/files/StandardPaths.Private.h"
#include "toolkit/framework/Text.h"

#include <wx/app.h>
#include <wx/filename.h>
#include <wx/stdpaths.h>
#include <wx/strconv.h>
#include <wx/utils.h>

#include <cstdlib>
#include <string>

// Without an application object, the queries of wxStandardPaths crash. With one, they decode names
// in the encoding of the locale; in a program that never called setlocale(), only ASCII survives.
namespace Toolkit {
namespace {

// Returns what wxStandardPaths appends to a directory for the application.
TString<wchar_t> GetApplicationName()
{
    const wxAppConsole* const application = wxAppConsole::GetInstance();
    if (!application || application->GetAppName().empty())
        return DeriveApplicationName(Base::GetExecutablePath());
    const wxStandardPaths& paths = wxStandardPaths::Get();
    wxString name;
    if (paths.UsesAppInfo(wxStandardPaths::AppInfo_VendorName))
        name = application->GetVendorName();
    if (paths.UsesAppInfo(wxStandardPaths::AppInfo_AppName))
        name += (name.empty() ? "" : "/") + application->GetAppName();
    return Framework::ToText(name);
}

bool DoesWxKnowExecutable()
{
    return wxAppConsole::GetInstance() &&
           Framework::ToText(wxStandardPaths::Get().GetExecutablePath()) ==
               Base::GetExecutablePath();
}

bool DoesWxKnowHome()
{
    return wxAppConsole::GetInstance() &&
           Framework::ToText(wxFileName::GetHomeDir()) == Base::GetHomeDirectory();
}

// Whether wxWidgets decodes the environment variable `name` as UTF-8.
bool DoesWxDecodeVariable(const char* name)
{
    wxString value;
    wxGetEnv(name, &value);
    return Framework::ToText(value) == TString<wchar_t>(Base::DecodeUtf8(std::getenv(name)));
}

// Whether wxWidgets encodes the file name `name` as UTF-8.
bool DoesWxEncode(const TString<wchar_t>& name)
{
    const wxCharBuffer encoded = Framework::ToWxString(name).mb_str(*wxConvFileName);
    return encoded && std::string(encoded.data(), encoded.length()) == Base::EncodeUtf8(name);
}

} // namespace

TString<wchar_t> FindExecutablePath()
{
    const TString<wchar_t> path = Base::GetExecutablePath();
    return path.empty() && wxAppConsole::GetInstance()
               ? Framework::ToText(wxStandardPaths::Get().GetExecutablePath())
               : path;
}

TString<wchar_t> DeriveApplicationName(const TString<wchar_t>& executable)
{
    wxString name;
    wxFileName::SplitPath(Framework::ToWxString(executable), nullptr, &name, nullptr);
    return Framework::ToText(name);
}

TString<wchar_t> FindDataDirectory()
{
    return DoesWxKnowExecutable()
               ? Framework::ToText(wxStandardPaths::Get().GetDataDir())
               : FindFallbackDataDirectory(Base::GetExecutablePath(), GetApplicationName());
}

TString<wchar_t> FindResourcesDirectory()
{
    return DoesWxKnowExecutable()
               ? Framework::ToText(wxStandardPaths::Get().GetResourcesDir())
               : FindFallbackResourcesDirectory(Base::GetExecutablePath(), GetApplicationName());
}

TString<wchar_t> FindUserLocalDataDirectory()
{
    return DoesWxKnowHome() ? Framework::ToText(wxStandardPaths::Get().GetUserLocalDataDir())
                            : FindFallbackUserLocalDataDirectory(GetApplicationName());
}

TString<wchar_t> FindDocumentsDirectory()
{
    const TString<wchar_t> directory = FindFallbackDocumentsDirectory();
    // wxWidgets cannot find a directory whose name it cannot encode.
    const bool canAskWx =
        DoesWxKnowHome() && DoesWxDecodeVariable("XDG_CONFIG_HOME") && DoesWxEncode(directory);
    return canAskWx ? Framework::ToText(wxStandardPaths::Get().GetDocumentsDir()) : directory;
}

} // namespace Toolkit
