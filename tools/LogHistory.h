#pragma once

#include "LogFollower.h"

namespace Tool {

/// Prints the lines of a log file in the order of time, and returns where the next one comes.
LogPosition PrintHistory(int file, LogPrinter& printer);

/// Where the next line of a log file comes.
LogPosition FindPosition(int file);

} // namespace Tool
