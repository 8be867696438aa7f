#pragma once

#include "LogFollower.h"

namespace Tool {

/// False for a file that contains NUL bytes but nothing in the form of a log line. Throws a
/// `Failure` if the file cannot be read, as the functions below do.
bool LooksLikeLog(int file);

/// Prints the lines of a log file in time order, and returns where the next line will be written.
LogPosition PrintHistory(int file, LogPrinter& printer);

/// Returns where the next line of a log file will be written.
LogPosition FindPosition(int file);

} // namespace Tool
