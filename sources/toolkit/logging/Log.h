#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/logging/ILogger.h"

namespace Toolkit {

/// Begins a line in the process-wide logger: sets its severity, then writes severity, tick count,
/// source line and function name, with their separators. `TOOLKIT_LOG` calls it.
TOOLKIT_API ILogger& BeginLogLine(LogSeverity severity, int line, const char* function);

} // namespace Toolkit

/// Begins a log line of `severity`; insert the message and the terminator after it:
///
///     TOOLKIT_LOG(SeverityError) << L"Unable to open file : " << path << ILogger::c_strLogToken3;
///
/// This logs "0 1234567 : 64 : Parse : Unable to open file : settings.ini" and a line feed:
/// severity, `GetTickCount()` in milliseconds, source line, function, message. The macro is an
/// expression, so the whole statement may be a branch without braces.
#define TOOLKIT_LOG(severity) TOOLKIT_LOG_AT_LINE(severity, __LINE__)

/// Begins a log line like `TOOLKIT_LOG`, but with a fixed line number that log readers match on.
#define TOOLKIT_LOG_AT_LINE(severity, line) ::Toolkit::BeginLogLine(severity, line, __FUNCTION__)
