#pragma once

#include <toolkit/logging/FileLogger.h>

#include "Terminal.h"

// The log of the host.

/// Installs a logger that writes to a file. If `name` is empty, uses the application's unique name,
/// which differs for each user. If another host is already running, appends "-second". The result
/// is never null; ILogger owns it until another logger is set.
const Toolkit::FileLogger* StartLog(Toolkit::LogSeverity level, Text name,
                                    unsigned int sizeLimitBytes);

/// Returns the path of the file that is actually open; a message if none is open after 5 seconds.
/// The logger uses another name if, for example, another process has the file open.
Text DescribeLogPath(const Toolkit::FileLogger& logger);
