#pragma once

#include <toolkit/logging/FileLogger.h>

#include "Terminal.h"

// The log of the host.

/// Installs a logger that writes to a file. If `name` is empty, uses the application's unique name,
/// which differs for each user. If another host is already running, appends "-second" to the name.
/// The result is never null; ILogger owns it until another logger is set.
const Toolkit::FileLogger* StartLog(Toolkit::LogSeverity level, Text name,
                                    unsigned int sizeLimitBytes);

/// Returns the path of the open log file; a message if none is open after 5 seconds. The name
/// differs from that passed to StartLog() if, for example, another process has that file open.
Text DescribeLogPath(const Toolkit::FileLogger& logger);
