// A string that parses as a date round-trips, in local time and in UTC; any other string leaves the
// date invalid.

#include "toolkit/datetime/DateTime.h"

#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <stdlib.h>
#include <string>
#include <time.h>

namespace {

using namespace Toolkit;

// A zone whose clocks never repeat or skip a time.
void SetZone()
{
    ::setenv("TZ", "<+0530>-05:30", 1);
    ::tzset();
}

void RequireRoundTrip(const DateTime& date, bool utc)
{
    TString<char> text;
    date.GetIsoString(text, utc);
    DateTime reparsed;
    Require(reparsed.ParseIsoString(text) && reparsed == date);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SetZone();
    const TString<char> text = std::string(reinterpret_cast<const char*>(data), size);
    DateTime date;

    const bool isDate = date.ParseIsoString(text);

    Require(isDate == date.IsValid());
    if (!isDate) {
        Require(date.GetMonth() == 0 && date.GetDay() == 0);
        return 0;
    }
    RequireRoundTrip(date, false);
    RequireRoundTrip(date, true);
    return 0;
}
