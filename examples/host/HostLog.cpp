#include "HostLog.h"

#include <toolkit/encoding/UTF8.h>
#include <toolkit/files/PathManager.h>
#include <toolkit/system/SingleApplicationInstance.h>

using namespace Toolkit;

namespace {

// Returns at most the last 200 bytes of the unique name, which ends with the names of the program
// and the user. A file name has 255 bytes at most, and StartLog() and the logger append to the
// name.
Text MakeDefaultName()
{
    constexpr std::size_t maxBytes = 200;

    Text name = PathManager::GetInstance()->GetApplicationUniqueName();
    while (UTF8::ToUTF8(name).size() > maxBytes)
        name.erase(0, 1);
    return name;
}

} // namespace

const FileLogger* StartLog(LogSeverity level, Text name, unsigned int sizeLimitBytes)
{
    if (name.empty())
        name = MakeDefaultName();
    if (SingleApplicationInstance::GetInstance()->IsAlreadyRunning())
        name += L"-second";
    auto* const logger = new FileLogger(level, name, sizeLimitBytes);
    ILogger::SetLogger(logger);
    return logger;
}

Text DescribeLogPath(const FileLogger& logger)
{
    constexpr unsigned int limitMs = 5000;

    const Text path = logger.GetPath(limitMs);
    return path.empty() ? Text(L"none: no file can be opened") : path;
}
