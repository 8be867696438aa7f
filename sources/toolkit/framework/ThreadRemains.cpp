#include "toolkit/framework/ThreadRemains.h"

#include "toolkit/base/OutOfMemory.h"

#include <wx/thread.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <new>
#include <thread>
#include <utility>

namespace Toolkit::Framework {
namespace {

constexpr std::chrono::milliseconds c_retryInterval{10};

// Head of the list, which keeps the remains reachable, so that leak checkers do not report them.
std::atomic<ThreadRemains*> s_first{nullptr};

class UncreatedThread : public wxThread {
public:
    UncreatedThread() : wxThread(wxTHREAD_JOINABLE) {}

private:
    ExitCode Entry() override { return nullptr; }
};

static_assert(sizeof(UncreatedThread) == sizeof(wxThread));
static_assert(sizeof(wxThread) <= sizeof(ThreadRemains::bytes));

void Keep(std::unique_ptr<ThreadRemains> remains)
{
    remains->next = s_first;
    while (!s_first.compare_exchange_weak(remains->next, remains.get())) {
    }
    static_cast<void>(remains.release());
}

} // namespace

void DiscardThread(wxThread& thread, std::unique_ptr<ThreadRemains> remains)
{
    void* const place = &thread;
    std::memcpy(remains->bytes, place, sizeof(wxThread));
    Keep(std::move(remains));
    while (!Base::RunsWithoutThrowing([place] { ::new (place) UncreatedThread(); }))
        std::this_thread::sleep_for(c_retryInterval);
}

} // namespace Toolkit::Framework
