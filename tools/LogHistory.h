#pragma once

#include "LogFollower.h"

namespace Tool {

/// False for a file that holds NUL bytes and nothing in the form of a log line: a binary file.
bool CanBeLog(int file);

/// Prints the lines of a log file in time order, and returns where the next one will be
/// written.
LogPosition PrintHistory(int file, LogPrinter& printer);

/// Where the next line of a log file will be written.
LogPosition FindPosition(int file);

} // namespace Tool
