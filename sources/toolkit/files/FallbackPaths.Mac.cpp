#include "toolkit/base/UserAccount.h"
#include "toolkit/files/FallbackPaths.Private.h"

namespace Toolkit::FallbackPaths {
namespace {

// The "Contents" directory of the application bundle, in which the executable has its "MacOS".
TString<wchar_t> BundleContents(const TString<wchar_t>& executable)
{
    const std::size_t folder = executable.rfind(L"/MacOS/");
    return folder == std::wstring::npos ? TString<wchar_t>(L".")
                                        : TString<wchar_t>(executable.substr(0, folder));
}

} // namespace

TString<wchar_t> DataDirectory(const TString<wchar_t>& executable, const TString<wchar_t>&)
{
    return BundleContents(executable) + L"/SharedSupport";
}

TString<wchar_t> ResourcesDirectory(const TString<wchar_t>& executable, const TString<wchar_t>&)
{
    return BundleContents(executable) + L"/Resources";
}

TString<wchar_t> UserLocalDataDirectory(const TString<wchar_t>& name)
{
    const TString<wchar_t> support = Base::GetHomeDirectory() + L"/Library/Application Support";
    return name.empty() ? support : TString<wchar_t>(support + L"/" + name);
}

TString<wchar_t> DocumentsDirectory()
{
    return Base::GetHomeDirectory() + L"/Documents";
}

} // namespace Toolkit::FallbackPaths
