#pragma once

#include "LogFiles.h"
#include "LogFollower.h"
#include "Output.h"

namespace Tool {

/// Prints what is added to `first`, whose lines are printed already, to the files in `known`, and
/// to further files of `name`, until a signal asks to stop.
void Follow(const LogName& name, LogFollower first, const std::vector<LogFileEntry>& known,
            LogPrinter& printer, Output& output);

} // namespace Tool
