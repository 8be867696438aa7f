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
    format = Base::TryOr(
        {}, [] { return JoinPatterns(ReadShortDatePattern(), ReadShortTimePattern()); });
    // The pattern contains at least a space.
    return !format.empty();
}

TString<wchar_t> Locales::GetProviderVersion()
{
    return Base::TryOr({}, [] { return TString<wchar_t>(c_localeProvider); });
}

} // namespace Toolkit
