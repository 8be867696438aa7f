#include "toolkit/core/smart_ptr.h"

#include <benchmark/benchmark.h>
#include <wx/sharedptr.h>

#include <boost/shared_ptr.hpp>
#include <memory>
#include <thread>

namespace Toolkit {
namespace {

// The std::shared_ptr of libstdc++ counts without atomic operations until the process has started
// a second thread.
void StartSecondThread()
{
    std::thread([] {}).join();
}

template <typename Pointer>
void CopyAndDrop(benchmark::State& state)
{
    StartSecondThread();
    const Pointer pointer(new int(7));
    for (auto _ : state) {
        const Pointer copy(pointer);
        benchmark::DoNotOptimize(*copy);
    }
    if (*pointer != 7)
        state.SkipWithError("the object is gone");
}

void BM_CopyAndDrop_Toolkit(benchmark::State& state)
{
    CopyAndDrop<smart_ptr<int>>(state);
}
BENCHMARK(BM_CopyAndDrop_Toolkit);

void BM_CopyAndDrop_StdSharedPtr(benchmark::State& state)
{
    CopyAndDrop<std::shared_ptr<int>>(state);
}
BENCHMARK(BM_CopyAndDrop_StdSharedPtr);

void BM_CopyAndDrop_BoostSharedPtr(benchmark::State& state)
{
    CopyAndDrop<boost::shared_ptr<int>>(state);
}
BENCHMARK(BM_CopyAndDrop_BoostSharedPtr);

void BM_CopyAndDrop_wxSharedPtr(benchmark::State& state)
{
    CopyAndDrop<wxSharedPtr<int>>(state);
}
BENCHMARK(BM_CopyAndDrop_wxSharedPtr);

template <typename Pointer>
void MakeAndDestroy(benchmark::State& state)
{
    StartSecondThread();
    for (auto _ : state) {
        const Pointer pointer(new int(7));
        benchmark::DoNotOptimize(*pointer);
    }
}

void BM_MakeAndDestroy_Toolkit(benchmark::State& state)
{
    MakeAndDestroy<smart_ptr<int>>(state);
}
BENCHMARK(BM_MakeAndDestroy_Toolkit);

void BM_MakeAndDestroy_StdSharedPtr(benchmark::State& state)
{
    MakeAndDestroy<std::shared_ptr<int>>(state);
}
BENCHMARK(BM_MakeAndDestroy_StdSharedPtr);

void BM_MakeAndDestroy_BoostSharedPtr(benchmark::State& state)
{
    MakeAndDestroy<boost::shared_ptr<int>>(state);
}
BENCHMARK(BM_MakeAndDestroy_BoostSharedPtr);

// All threads share one count.
template <typename Pointer>
void CopyOneBlock(benchmark::State& state)
{
    static const Pointer pointer(new int(7));
    for (auto _ : state) {
        const Pointer copy(pointer);
        benchmark::DoNotOptimize(*copy);
    }
    if (*pointer != 7)
        state.SkipWithError("the object is gone");
}

void BM_CopyOneBlock_Toolkit(benchmark::State& state)
{
    CopyOneBlock<smart_ptr<int>>(state);
}
BENCHMARK(BM_CopyOneBlock_Toolkit)->Threads(2)->UseRealTime();

void BM_CopyOneBlock_StdSharedPtr(benchmark::State& state)
{
    CopyOneBlock<std::shared_ptr<int>>(state);
}
BENCHMARK(BM_CopyOneBlock_StdSharedPtr)->Threads(2)->UseRealTime();

void BM_CopyOneBlock_BoostSharedPtr(benchmark::State& state)
{
    CopyOneBlock<boost::shared_ptr<int>>(state);
}
BENCHMARK(BM_CopyOneBlock_BoostSharedPtr)->Threads(2)->UseRealTime();

} // namespace
} // namespace Toolkit
