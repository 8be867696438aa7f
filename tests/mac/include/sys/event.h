#pragma once

#include <cstdint>
#include <ctime>

// kqueue(2), kevent(2)

struct kevent {
    uintptr_t ident;
    int16_t filter;
    uint16_t flags;
    uint32_t fflags;
    intptr_t data;
    void* udata;
};

#define EV_SET(event, id, eventFilter, action, filterFlags, filterData, user)                      \
    (*(event) = {static_cast<uintptr_t>(id), static_cast<int16_t>(eventFilter),                    \
                 static_cast<uint16_t>(action), static_cast<uint32_t>(filterFlags),                \
                 static_cast<intptr_t>(filterData), (user)})

constexpr int16_t EVFILT_READ = -1;
constexpr int16_t EVFILT_TIMER = -7;
constexpr uint16_t EV_ADD = 0x0001;
constexpr uint16_t EV_DELETE = 0x0002;

extern "C" {
int kqueue();
int kevent(int queue, const struct kevent* changes, int changeCount, struct kevent* events,
           int eventCount, const struct timespec* timeout);
}
