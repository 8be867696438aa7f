#pragma once

#include <functional>

namespace Tool {

class Output;

/// How the command ends.
enum ExitCode {
    ExitGood = 0,  ///< Done; nothing is wrong.
    ExitNo = 1,    ///< The answer is no: nothing found, not delivered, or something is wrong.
    ExitError = 2, ///< Wrong usage, or something cannot be read or written.
};

/// What a subcommand does once its arguments are known; returns an exit code.
using Action = std::function<int(Output&)>;

} // namespace Tool
