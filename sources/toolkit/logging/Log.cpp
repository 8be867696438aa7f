#include "toolkit/logging/Log.h"

#include "toolkit/system/TickCount.h"

namespace Toolkit {

ILogger& BeginLogLine(LogSeverity severity, int line, const char* function)
{
    return ILogger::GetLogger() << SetSeverity(severity) << severity << ILogger::c_strLogToken1
                                << GetTickCount() << ILogger::c_strLogToken2 << line
                                << ILogger::c_strLogToken2 << function << ILogger::c_strLogToken2;
}

} // namespace Toolkit
