#pragma once

namespace Tool {

/// By the number that the log has for them.
constexpr const char* c_severityNames[] = {"error", "warning", "info", "debug", "verbose"};

} // namespace Tool
