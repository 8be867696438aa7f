#pragma once

#include <functional>

/// Turns the first SIGINT, SIGTERM or SIGHUP into a call on the thread of the event loop. Just
/// before the call, restores the default actions, so that a second signal ends the process
/// immediately.
///
/// A signal that was ignored when the process started, as under nohup, stays ignored. Only one
/// object may exist at a time.
class StopSignals {
public:
    explicit StopSignals(std::function<void()> onSignal);
    ~StopSignals();

    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

private:
    const std::function<void()> m_onSignal;
};
