#include "toolkit/threading/EventNotifier.h"

#include <benchmark/benchmark.h>
#include <wx/thread.h>

#include <memory>
#include <vector>

namespace {

using namespace Toolkit;

constexpr int c_listeners = 10;

class IListener {
public:
    virtual ~IListener() = default;
    virtual void OnEvent() = 0;
};

class Counter : public IListener {
public:
    explicit Counter(long& count) : m_count(count) {}
    void OnEvent() override { ++m_count; }

private:
    long& m_count;
};

class Notifier : public EventNotifier<IListener> {
public:
    void Send()
    {
        Notify([](IListener& listener) { listener.OnEvent(); });
    }
};

void CheckCount(benchmark::State& state, long count)
{
    if (count != state.iterations() * c_listeners)
        state.SkipWithError("wrong number of calls");
}

void BM_Notify_Toolkit(benchmark::State& state)
{
    long count = 0;
    Notifier notifier;
    for (int i = 0; i < c_listeners; ++i)
        notifier.AddListener(smart_ptr<IListener>(new Counter(count)));
    for (auto _ : state)
        notifier.Send();
    CheckCount(state, count);
}
BENCHMARK(BM_Notify_Toolkit);

// One pair of a recursive mutex's operations around as many calls.
void BM_Notify_wxMutexAndCalls(benchmark::State& state)
{
    long count = 0;
    wxMutex mutex(wxMUTEX_RECURSIVE);
    std::vector<std::unique_ptr<IListener>> listeners;
    for (int i = 0; i < c_listeners; ++i)
        listeners.push_back(std::make_unique<Counter>(count));
    for (auto _ : state) {
        const wxMutexLocker locker(mutex);
        for (const std::unique_ptr<IListener>& listener : listeners)
            listener->OnEvent();
    }
    CheckCount(state, count);
}
BENCHMARK(BM_Notify_wxMutexAndCalls);

} // namespace
