#pragma once

#include <functional>

namespace Tool {

class Output;

/// The exit codes of `toolkit`.
enum ExitCode {
    ExitGood = 0,  ///< Success; no problem was found.
    ExitNo = 1,    ///< Nothing was found or delivered, or a problem was found.
    ExitError = 2, ///< Wrong usage, or the subcommand failed.
};

/// Runs a subcommand whose arguments have been parsed; returns an exit code.
using Action = std::function<int(Output&)>;

} // namespace Tool
