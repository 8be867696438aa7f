#pragma once

namespace Toolkit {

/// How severe a log message is: the smaller the number, the more severe. Log lines begin with it.
enum LogSeverity : int {
    SeverityError = 0,
    SeverityWarning = 1,
    SeverityInfo = 2,
    SeverityDebug = 3,
    SeverityVerbose = 4,
};

} // namespace Toolkit
