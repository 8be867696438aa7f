// Implements, with poll(2), the parts of kqueue(2) and kevent(2) that the library uses: readable
// descriptors, and timers whose interval is at least one millisecond. kevent() ignores its timeout
// and never waits. The queue's own descriptor does not show whether there are events.

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <map>
#include <poll.h>
#include <set>
#include <sys/event.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Timer {
    std::chrono::milliseconds interval;
    Clock::time_point next;
};

struct Queue {
    std::set<uintptr_t> readers;
    std::map<uintptr_t, Timer> timers;
};

std::map<int, Queue> s_queues;

int FailWithNoEntry()
{
    errno = ENOENT;
    return -1;
}

int ApplyChange(Queue& queue, const struct kevent& change)
{
    if (change.filter == EVFILT_READ) {
        if (change.flags & EV_ADD)
            queue.readers.insert(change.ident);
        else if (queue.readers.erase(change.ident) == 0)
            return FailWithNoEntry();
        return 0;
    }
    if (change.flags & EV_ADD) {
        const std::chrono::milliseconds interval(change.data);
        queue.timers[change.ident] = {interval, Clock::now() + interval};
    } else if (queue.timers.erase(change.ident) == 0) {
        return FailWithNoEntry();
    }
    return 0;
}

std::vector<struct kevent> FindReadable(const Queue& queue)
{
    std::vector<struct kevent> found;
    for (const uintptr_t descriptor : queue.readers) {
        pollfd entry{static_cast<int>(descriptor), POLLIN, 0};
        if (::poll(&entry, 1, 0) == 1)
            found.push_back({descriptor, EVFILT_READ, 0, 0, 0, nullptr});
    }
    return found;
}

// Reports each expired timer once, with the number of expirations, until there are `maxCount`
// events.
void AppendTimers(Queue& queue, std::size_t maxCount, std::vector<struct kevent>& found)
{
    for (auto& [id, timer] : queue.timers) {
        if (found.size() >= maxCount)
            return;
        intptr_t count = 0;
        for (; timer.next <= Clock::now(); timer.next += timer.interval)
            ++count;
        if (count > 0)
            found.push_back({id, EVFILT_TIMER, 0, 0, count, nullptr});
    }
}

} // namespace

extern "C" int kqueue()
{
    const int queue = ::open("/dev/null", O_RDONLY);
    s_queues[queue] = {};
    return queue;
}

extern "C" int kevent(int queue, const struct kevent* changes, int changeCount,
                      struct kevent* events, int eventCount, const struct timespec*)
{
    Queue& state = s_queues[queue];
    for (int i = 0; i < changeCount; ++i) {
        if (ApplyChange(state, changes[i]) != 0)
            return -1;
    }
    if (eventCount == 0)
        return 0;
    std::vector<struct kevent> found = FindReadable(state);
    const auto maxCount = static_cast<std::size_t>(eventCount);
    AppendTimers(state, maxCount, found);
    const std::size_t count = std::min(found.size(), maxCount);
    std::copy_n(found.begin(), count, events);
    return static_cast<int>(count);
}
