#pragma once

#include "toolkit/logging/ILogger.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace Toolkit::TestSupport {

/// Installs a process-wide logger that records what is written to it. The destructor removes it.
class CapturedLog {
public:
    explicit CapturedLog(LogSeverity threshold = SeverityVerbose);
    ~CapturedLog();

    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    /// The strings passed to Write(), in order.
    std::vector<std::wstring> Pieces() const;

    /// The same strings, joined and split into lines without line feeds. The last line may be
    /// unfinished.
    std::vector<std::wstring> Lines() const;

    void Clear();

private:
    class Sink;

    bool m_ownsInstance;
    Sink* m_sink; // owned by the process-wide logger instance
};

/// Matches a log line of `severity` from `function` with `message`, with any tick count and source
/// line.
testing::Matcher<std::wstring> IsLogLine(LogSeverity severity, const std::wstring& function,
                                         const std::wstring& message);

/// The same, but only from source line `line`.
testing::Matcher<std::wstring> IsLogLine(LogSeverity severity, int line,
                                         const std::wstring& function, const std::wstring& message);

} // namespace Toolkit::TestSupport
