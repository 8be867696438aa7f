#pragma once

#include "toolkit/logging/ILogger.h"

namespace Toolkit {

/// Writes log text to the wide standard output.
///
/// Nothing is added or flushed, and stream errors are ignored: a character that the stream's locale
/// cannot write shows as "?".
class TOOLKIT_API ConsoleLogger : public ILogger {
public:
    explicit ConsoleLogger(LogSeverity threshold);
    ~ConsoleLogger() override;

    void Write(const TString<wchar_t>& text) override;
};

} // namespace Toolkit
