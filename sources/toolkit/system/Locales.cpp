#include "toolkit/system/Locales.h"

#include "toolkit/system/LocalePatterns.Private.h"

namespace Toolkit {

bool Locales::GetDecimalSeparator(TString<wchar_t>& result)
{
    result = L".";
    return false;
}

bool Locales::GetCurrentDateFormat(TString<wchar_t>& format)
{
    format = LocalePatterns::Compose(LocalePatterns::ShortDate(), LocalePatterns::ShortTime());
    return true;
}

} // namespace Toolkit
