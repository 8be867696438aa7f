#include "toolkit/core/smart_ptr.h"

#include <benchmark/benchmark.h>
#include <wx/sharedptr.h>
#include <wx/thread.h>

#include <boost/shared_ptr.hpp>
#include <memory>
#include <thread>

namespace Toolkit {
namespace {

// The standard pointer counts without atomic operations until the process has had a second thread.
void HaveHadAThread()
{
    std::thread([] {}).join();
}

template <typename Pointer>
void CopyAndDrop(benchmark::State& state)
{
    HaveHadAThread();
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

// The floor of a count that has a lock of its own: one lock for the copy, one for its end.
void BM_CopyAndDrop_wxMutexTwoLocks(benchmark::State& state)
{
    HaveHadAThread();
    wxMutex mutex(wxMUTEX_RECURSIVE);
    int count = 1;
    for (auto _ : state) {
        mutex.Lock();
        benchmark::DoNotOptimize(++count);
        mutex.Unlock();
        mutex.Lock();
        benchmark::DoNotOptimize(--count);
        mutex.Unlock();
    }
    if (count != 1)
        state.SkipWithError("wrong count");
}
BENCHMARK(BM_CopyAndDrop_wxMutexTwoLocks);

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

} // namespace
} // namespace Toolkit
