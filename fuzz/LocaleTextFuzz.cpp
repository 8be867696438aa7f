// Formatting with any pattern gives the same result as replacing one token at a time and searching
// from the beginning of the pattern each time.

#include "toolkit/datetime/LocaleText.Private.h"

#include "references/LocaleText.h"
#include "support/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace Toolkit;

constexpr CalendarTime c_time{2009, 3, 5, 19, 4, 9};

DayPeriods GetDayPeriods()
{
    return {L"AM", L"PM"};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The reference takes quadratic time.
    constexpr std::size_t maxLength = 4096;

    const std::wstring pattern(data, data + std::min(size, maxLength));

    Require(FormatDateByPattern(pattern, c_time) == References::FormatDate(pattern));
    Require(FormatTimeByPattern(pattern, c_time, GetDayPeriods) == References::FormatTime(pattern));
    return 0;
}
