#pragma once

#include <functional>

namespace Tool {

class Output;

/// The exit codes of `toolkit`.
enum ExitCode {
    ExitSuccess = 0,  ///< Success; no problem was found.
    ExitNegative = 1, ///< Nothing was found or delivered, or there is a problem.
    ExitError = 2,    ///< Wrong usage, or the subcommand failed.
};

/// Runs a subcommand whose arguments have been parsed; returns an exit code.
using Action = std::function<int(Output&)>;

} // namespace Tool
