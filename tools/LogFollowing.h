#pragma once

#include <vector>

#include "LogFiles.h"
#include "LogFollower.h"
#include "Output.h"

namespace Tool {

/// Prints new lines of a log until a stop signal arrives: those added to `first` and to the files
/// in `known`, and all lines of files of `name` that appear later.
void Follow(const LogName& name, LogFollower first, const std::vector<LogFileEntry>& known,
            LogPrinter& printer, Output& output);

} // namespace Tool
