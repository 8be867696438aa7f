#include "toolkit/system/TickCount.h"

#include <benchmark/benchmark.h>

#include <sys/times.h>

namespace {

void BM_TickCount_Toolkit(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Toolkit::GetTickCount());
}
BENCHMARK(BM_TickCount_Toolkit);

void BM_TickCount_times(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(::times(nullptr));
}
BENCHMARK(BM_TickCount_times);

} // namespace
