#pragma once

#include "toolkit/logging/ILogger.h"

namespace Toolkit {

/// Writes log text to the wide standard output, exactly like `ConsoleLogger`. Despite its name, it
/// writes nothing to a debugger.
class TOOLKIT_API DebuggerLogger : public ILogger {
public:
    explicit DebuggerLogger(LogSeverity threshold);
    ~DebuggerLogger() override;

    void Write(const TString<wchar_t>& text) override;
};

} // namespace Toolkit
