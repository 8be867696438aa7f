#include "toolkit/system/LocalePatterns.Private.h"

#include <algorithm>

namespace Toolkit {
namespace {

constexpr std::size_t c_maxPatternLength = 255;

bool IsUsable(const TString<wchar_t>& pattern)
{
    return pattern.size() <= c_maxPatternLength &&
           std::all_of(pattern.begin(), pattern.end(),
                       [](wchar_t character) { return character > 0 && character <= 0x7F; });
}

} // namespace

TString<wchar_t> JoinPatterns(const TString<wchar_t>& date, const TString<wchar_t>& time)
{
    const TString<wchar_t>& empty = TString<wchar_t>::Empty();
    return (IsUsable(date) ? date : empty) + L" " + (IsUsable(time) ? time : empty);
}

} // namespace Toolkit
