#pragma once

#include "LogFiles.h"
#include "LogFollower.h"
#include "Output.h"

namespace Tool {

/// Prints the lines added to `first`, whose existing lines are printed already, to the files in
/// `known`, whose existing lines are not printed, and to new files of `name`, until a signal asks
/// to stop.
void Follow(const LogName& name, LogFollower first, const std::vector<LogFileEntry>& known,
            LogPrinter& printer, Output& output);

} // namespace Tool
