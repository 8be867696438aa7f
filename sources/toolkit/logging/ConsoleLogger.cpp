#include "toolkit/logging/ConsoleLogger.h"

#include "toolkit/logging/WideOutput.Private.h"

namespace Toolkit {

ConsoleLogger::ConsoleLogger(LogSeverity threshold) : ILogger(threshold) {}

ConsoleLogger::~ConsoleLogger() = default;

void ConsoleLogger::Write(const TString<wchar_t>& text)
{
    WriteToWideOutput(text);
}

} // namespace Toolkit
