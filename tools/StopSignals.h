#pragma once

namespace Tool {

/// While an object of this class exists, the first SIGINT, SIGTERM or SIGHUP does not end the
/// process: IsRequested() reports it. A second one ends the process at once.
///
/// A signal that the process was told to ignore, as nohup does, stays ignored.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();

    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    static bool IsRequested();

    /// Ends the process by the signal that came, if one came.
    static void EndIfRequested();
};

} // namespace Tool
