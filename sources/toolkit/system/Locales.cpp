#include "toolkit/system/Locales.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/system/LocalePatterns.Private.h"

namespace Toolkit {

bool Locales::GetDecimalSeparator(TString<wchar_t>& result)
{
    result = L".";
    return false;
}

bool Locales::GetCurrentDateFormat(TString<wchar_t>& format)
{
    format = Base::ResultOr({}, [] {
        return LocalePatterns::Compose(LocalePatterns::ShortDate(), LocalePatterns::ShortTime());
    });
    // The pattern holds a space at least.
    return !format.empty();
}

TString<wchar_t> Locales::GetProviderVersion()
{
    return Base::ResultOr({}, [] { return TString<wchar_t>(LocalePatterns::c_provider); });
}

} // namespace Toolkit
