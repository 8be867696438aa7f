#include "toolkit/logging/Log.h"

#include "toolkit/base/TickCount.h"

namespace Toolkit {

ILogger& BeginLogLine(LogSeverity severity, int line, const char* function)
{
    ILogger& logger = ILogger::GetLogger() << SetSeverity(severity);
    // Reading the tick count takes most of the time here, so a line that is filtered out skips it.
    if (logger.IsFilteredOut())
        return logger;
    return logger << severity << ILogger::c_strLogToken1 << Base::GetTickCount()
                  << ILogger::c_strLogToken2 << line << ILogger::c_strLogToken2 << function
                  << ILogger::c_strLogToken2;
}

} // namespace Toolkit
