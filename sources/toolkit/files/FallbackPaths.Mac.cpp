#include "toolkit/base/ExecutablePath.h"
#include "toolkit/base/UserAccount.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/files/FallbackPaths.Private.h"
#include "toolkit/files/PathManager.h"

namespace Toolkit::FallbackPaths {
namespace {

TString<wchar_t> ApplicationName()
{
    TString<wchar_t> volume;
    TString<wchar_t> path;
    TString<wchar_t> name;
    TString<wchar_t> extension;
    PathManager::SplitPath(Base::GetExecutablePath(), volume, path, name, extension);
    return name;
}

// The "Contents" directory of the application bundle, in which the executable has its "MacOS".
TString<wchar_t> BundleContents()
{
    const TString<wchar_t> path = Base::GetExecutablePath();
    const std::size_t folder = path.rfind(L"/MacOS/");
    return folder == std::wstring::npos ? TString<wchar_t>(L".")
                                        : TString<wchar_t>(path.substr(0, folder));
}

} // namespace

TString<wchar_t> DataDirectory()
{
    return BundleContents() + L"/SharedSupport";
}

TString<wchar_t> ResourcesDirectory()
{
    return BundleContents() + L"/Resources";
}

TString<wchar_t> UserLocalDataDirectory()
{
    return Base::GetHomeDirectory() + L"/Library/Application Support/" + ApplicationName();
}

TString<wchar_t> DocumentsDirectory()
{
    return Base::GetHomeDirectory() + L"/Documents";
}

} // namespace Toolkit::FallbackPaths
