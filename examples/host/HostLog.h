#pragma once

#include <toolkit/logging/FileLogger.h>

#include "Terminal.h"

// The log of the host.

/// Installs a logger that writes to a file. An empty `name` means the application's unique
/// name, which no other user's host has; a host that runs beside another one adds to the name. The
/// result is never null. ILogger owns it until another logger is set.
const Toolkit::FileLogger* StartLog(Toolkit::LogSeverity level, Text name,
                                    unsigned int sizeLimitBytes);

/// The file that is really open; a message when there is none after 5 seconds. The logger takes
/// another name while another process has the file, for example.
Text DescribeLogPath(const Toolkit::FileLogger& logger);
