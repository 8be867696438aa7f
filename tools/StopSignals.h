#pragma once

namespace Tool {

/// While an object of this class exists, the first SIGINT, SIGTERM or SIGHUP does not end the
/// process: IsRequested() reports it. A second signal of the same kind ends the process.
///
/// A signal that was ignored when the process started, as under nohup, stays ignored.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();

    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// Whether a signal has arrived while an object of this class existed.
    static bool IsRequested();

    /// If a signal has arrived, ends the process by that signal.
    static void EndIfRequested();
};

} // namespace Tool
