#include "toolkit/base/UserAccount.h"
#include "toolkit/files/FallbackPaths.Private.h"

#include <cstddef>

namespace Toolkit {
namespace {

// Returns the "Contents" directory of the application bundle, whose "MacOS" directory contains the
// executable; "." if there is no bundle.
TString<wchar_t> FindBundleContents(const TString<wchar_t>& executable)
{
    const std::size_t folder = executable.rfind(L"/MacOS/");
    return folder == std::wstring::npos ? TString<wchar_t>(L".")
                                        : TString<wchar_t>(executable.substr(0, folder));
}

} // namespace

TString<wchar_t> FindFallbackDataDirectory(const TString<wchar_t>& executable,
                                           const TString<wchar_t>&)
{
    return FindBundleContents(executable) + L"/SharedSupport";
}

TString<wchar_t> FindFallbackResourcesDirectory(const TString<wchar_t>& executable,
                                                const TString<wchar_t>&)
{
    return FindBundleContents(executable) + L"/Resources";
}

TString<wchar_t> FindFallbackUserLocalDataDirectory(const TString<wchar_t>& name)
{
    const TString<wchar_t> support = Base::GetHomeDirectory() + L"/Library/Application Support";
    return name.empty() ? support : TString<wchar_t>(support + L"/" + name);
}

TString<wchar_t> FindFallbackDocumentsDirectory()
{
    return Base::GetHomeDirectory() + L"/Documents";
}

} // namespace Toolkit
