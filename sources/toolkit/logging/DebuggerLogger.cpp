#include "toolkit/logging/DebuggerLogger.h"

#include "toolkit/logging/WideOutput.Private.h"

namespace Toolkit {

DebuggerLogger::DebuggerLogger(LogSeverity threshold) : ILogger(threshold) {}

DebuggerLogger::~DebuggerLogger() = default;

void DebuggerLogger::Write(const TString<wchar_t>& text)
{
    WriteToWideOutput(text);
}

} // namespace Toolkit
