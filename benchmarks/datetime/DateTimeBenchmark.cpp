#include "toolkit/datetime/DateTime.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <fmt/xchar.h>
#include <stdlib.h>
#include <string>
#include <time.h>

namespace Toolkit {
namespace {

constexpr const char* c_text = "2009-07-05 07:04:09";
constexpr const wchar_t* c_wideText = L"2009-07-05 07:04:09";

// Sets TZ if the benchmark's argument is 1. If it is 0, the C library looks up the machine's time
// zone.
void SetZone(const benchmark::State& state)
{
    if (state.range(0) == 1)
        ::setenv("TZ", "Europe/Berlin", 1);
    else
        ::unsetenv("TZ");
    ::tzset();
}

std::time_t ParseInstant()
{
    std::tm fields{};
    ::strptime(c_text, "%Y-%m-%d %H:%M:%S", &fields);
    fields.tm_isdst = -1;
    return std::mktime(&fields);
}

void BM_WriteIso_Toolkit(benchmark::State& state)
{
    SetZone(state);
    DateTime date;
    date.ParseIsoString(TString<char>(c_text));
    TString<wchar_t> text;
    for (auto _ : state)
        date.GetIsoString(text, false);
    if (text != c_wideText)
        state.SkipWithError("wrong text");
}
BENCHMARK(BM_WriteIso_Toolkit)->ArgName("tz")->Arg(0)->Arg(1);

void BM_WriteIso_Fmt(benchmark::State& state)
{
    SetZone(state);
    const std::time_t instant = ParseInstant();
    std::wstring text;
    for (auto _ : state) {
        std::tm fields{};
        ::localtime_r(&instant, &fields);
        text = fmt::format(L"{:04}-{:02}-{:02} {:02}:{:02}:{:02}", fields.tm_year + 1900,
                           fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min,
                           fields.tm_sec);
    }
    if (text != c_wideText)
        state.SkipWithError("wrong text");
}
BENCHMARK(BM_WriteIso_Fmt)->ArgName("tz")->Arg(0)->Arg(1);

void BM_ParseIso_Toolkit(benchmark::State& state)
{
    SetZone(state);
    const TString<wchar_t> text = c_wideText;
    DateTime date;
    for (auto _ : state)
        benchmark::DoNotOptimize(date.ParseIsoString(text));
    if (date.GetHour() != 7 || date.GetDay() != 5)
        state.SkipWithError("wrong date");
}
BENCHMARK(BM_ParseIso_Toolkit)->ArgName("tz")->Arg(0)->Arg(1);

void BM_ParseIso_Strptime(benchmark::State& state)
{
    SetZone(state);
    std::time_t instant = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(instant = ParseInstant());
    if (std::localtime(&instant)->tm_hour != 7)
        state.SkipWithError("wrong date");
}
BENCHMARK(BM_ParseIso_Strptime)->ArgName("tz")->Arg(0)->Arg(1);

} // namespace
} // namespace Toolkit
