#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Tool {

/// The parts of a log line, in one of the two forms in docs/formats/log.md. The views point into
/// the line.
struct LogHeader {
    int severity = 0;
    bool isFromWx = false;       ///< A message from wxWidgets, without a source line.
    std::uint32_t tick = 0;      ///< In milliseconds; if `isFromWx`, seconds since 1970.
    std::string_view sourceLine; ///< Decimal.
    std::string_view function;   ///< "wx" for a message from wxWidgets.
    std::string_view message;
};

/// The maximum number of bytes that StartsLikeLogLine() needs.
constexpr std::size_t c_maxLineStartLength = 32;

/// Whether `text` begins like a log line, and not in the middle of one.
bool StartsLikeLogLine(std::string_view text);

/// Splits `line` into its parts; empty if it does not have the form of a log line.
std::optional<LogHeader> ParseLogHeader(std::string_view line);

} // namespace Tool
