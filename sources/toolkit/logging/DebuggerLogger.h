#pragma once

#include "toolkit/logging/ILogger.h"

namespace Toolkit {

/// Writes log text to the wide standard output, just as `ConsoleLogger` does: there is no debugger
/// channel of its own.
///
/// Nothing is added or flushed, and stream errors are ignored: a character that the stream's locale
/// cannot write shows as "?".
class TOOLKIT_API DebuggerLogger : public ILogger {
public:
    explicit DebuggerLogger(LogSeverity threshold);
    ~DebuggerLogger() override;

    void Write(const TString<wchar_t>& text) override;
};

} // namespace Toolkit
