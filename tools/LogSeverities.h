#pragma once

namespace Tool {

/// The names of the severities, indexed by their number in the log.
constexpr const char* c_severityNames[] = {"error", "warning", "info", "debug", "verbose"};

} // namespace Tool
