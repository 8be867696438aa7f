#include "toolkit/threading/EventNotifier.h"

#include <benchmark/benchmark.h>
#include <wx/thread.h>

#include <memory>
#include <vector>

namespace {

using namespace Toolkit;

constexpr int c_listenerCount = 10;

class IListener {
public:
    virtual ~IListener() = default;
    virtual void OnEvent() = 0;
};

class UpCounter : public IListener {
public:
    explicit UpCounter(long& count) : m_count(count) {}
    void OnEvent() override { ++m_count; }

private:
    long& m_count;
};

class DownCounter : public IListener {
public:
    explicit DownCounter(long& count) : m_count(count) {}
    void OnEvent() override { --m_count; }

private:
    long& m_count;
};

// Alternates between two classes: with a single one, the compiler could devirtualize the calls.
IListener* CreateListener(int number, long& ups, long& downs)
{
    if (number % 2 == 0)
        return new UpCounter(ups);
    return new DownCounter(downs);
}

class Notifier : public EventNotifier<IListener> {
public:
    void Send()
    {
        Notify([](IListener& listener) { listener.OnEvent(); });
    }
};

void CheckCounts(benchmark::State& state, long ups, long downs)
{
    const long calls = state.iterations() * c_listenerCount / 2;
    if (ups != calls || downs != -calls)
        state.SkipWithError("wrong number of calls");
}

void BM_Notify_Toolkit(benchmark::State& state)
{
    long ups = 0;
    long downs = 0;
    Notifier notifier;
    for (int i = 0; i < c_listenerCount; ++i)
        notifier.AddListener(smart_ptr<IListener>(CreateListener(i, ups, downs)));
    for (auto _ : state)
        notifier.Send();
    CheckCounts(state, ups, downs);
}
BENCHMARK(BM_Notify_Toolkit);

// Locks a recursive mutex once and makes the same number of virtual calls.
void BM_Notify_wxMutexAndCalls(benchmark::State& state)
{
    long ups = 0;
    long downs = 0;
    wxMutex mutex(wxMUTEX_RECURSIVE);
    std::vector<std::unique_ptr<IListener>> listeners;
    listeners.reserve(c_listenerCount);
    for (int i = 0; i < c_listenerCount; ++i)
        listeners.emplace_back(CreateListener(i, ups, downs));
    for (auto _ : state) {
        const wxMutexLocker locker(mutex);
        for (const std::unique_ptr<IListener>& listener : listeners)
            listener->OnEvent();
    }
    CheckCounts(state, ups, downs);
}
BENCHMARK(BM_Notify_wxMutexAndCalls);

} // namespace
