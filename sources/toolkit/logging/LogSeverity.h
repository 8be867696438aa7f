#pragma once

namespace Toolkit {

/// How severe a log message is; smaller is more severe. Logs show the number.
enum LogSeverity : int {
    SeverityError = 0,
    SeverityWarning = 1,
    SeverityInfo = 2,
    SeverityDebug = 3,
    SeverityVerbose = 4,
};

} // namespace Toolkit
