#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Tool {

/// The parts of a log's line, which point into it. docs/formats/log.md describes both forms.
struct LogHeader {
    int severity = 0;
    bool isOfWx = false;         ///< A message of wxWidgets: no tick, no source line, no function.
    std::uint32_t tick = 0;      ///< Milliseconds; of wxWidgets, seconds since 1970.
    std::string_view sourceLine; ///< Decimal.
    std::string_view function;
    std::string_view message;
};

/// How many bytes of a line BeginsLogLine() looks at, at most.
constexpr std::size_t c_longestLogLineBegin = 32;

/// Whether `text` begins like a line, and not like the rest of one.
bool BeginsLogLine(std::string_view text);

/// The parts of `line`; empty when it does not have the form of a log line.
std::optional<LogHeader> ParseLogHeader(std::string_view line);

} // namespace Tool
