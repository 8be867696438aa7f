#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/logging/ILogger.h"

namespace Toolkit {

/// Begins a line on the process-wide logger: severity, tick count, source line and function name,
/// with their separators. What `TOOLKIT_LOG` stands for.
TOOLKIT_API ILogger& BeginLogLine(LogSeverity severity, int line, const char* function);

} // namespace Toolkit

/// Begins a log line of `severity`; the message and the terminator are inserted behind it:
///
///     TOOLKIT_LOG(SeverityError) << L"Unable to open file : " << path << ILogger::c_strLogToken3;
///
/// It gives "0 1234567 : 64 : Parse : Unable to open file : settings.ini" and a line feed:
/// severity, milliseconds of `GetTickCount()`, source line, function. One expression, usable in a
/// branch without braces.
#define TOOLKIT_LOG(severity) TOOLKIT_LOG_AT_LINE(severity, __LINE__)

/// The same with the line number that readers of the log know the message by, wherever the
/// statement moves.
#define TOOLKIT_LOG_AT_LINE(severity, line) ::Toolkit::BeginLogLine(severity, line, __FUNCTION__)
