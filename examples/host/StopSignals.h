#pragma once

#include <functional>

/// Turns the first SIGINT, SIGTERM or SIGHUP into a call on the thread of the event loop. After it
/// these signals have their default action again, so that a second one ends the process at once.
///
/// A signal that the process was told to ignore, as nohup does, stays ignored. Only one object may
/// exist at a time.
class StopSignals {
public:
    explicit StopSignals(std::function<void()> onSignal);
    ~StopSignals();

    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

private:
    const std::function<void()> m_onSignal;
};
