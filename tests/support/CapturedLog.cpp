#include "support/CapturedLog.h"

#include <mutex>
#include <regex>
#include <string>
#include <utility>

namespace Toolkit::TestSupport {

class CapturedLog::Sink : public ILogger {
public:
    using ILogger::ILogger;

    void Write(const TString<wchar_t>& text) override
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_pieces.push_back(text);
    }

    std::vector<std::wstring> Pieces() const
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        return m_pieces;
    }

    void Clear()
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_pieces.clear();
    }

private:
    mutable std::mutex m_lock;
    std::vector<std::wstring> m_pieces; // guarded by m_lock
};

CapturedLog::CapturedLog(LogSeverity threshold)
    : m_ownsInstance(!ILogger::s_pInstance), m_sink(new Sink(threshold))
{
    ILogger::CreateInstance();
    ILogger::SetLogger(smart_ptr<ILogger>(m_sink));
}

CapturedLog::~CapturedLog()
{
    if (m_ownsInstance)
        ILogger::ReleaseInstance();
    else
        ILogger::SetLogger(smart_ptr<ILogger>());
}

std::vector<std::wstring> CapturedLog::Pieces() const
{
    return m_sink->Pieces();
}

std::vector<std::wstring> CapturedLog::Lines() const
{
    std::vector<std::wstring> lines;
    std::wstring line;
    for (const std::wstring& piece : m_sink->Pieces()) {
        for (const wchar_t character : piece) {
            if (character == L'\n')
                lines.push_back(std::exchange(line, {}));
            else
                line.push_back(character);
        }
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

void CapturedLog::Clear()
{
    m_sink->Clear();
}

namespace {

// Whether `line` is a log line with these parts. A negative `sourceLine` matches any.
bool MatchesLogLine(const std::wstring& line, LogSeverity severity, int sourceLine,
                    const std::wstring& function, const std::wstring& message)
{
    // Unlike .*, [^]* also matches line terminators.
    static const std::wregex form(L"(\\d+) \\d+ : (\\d+) : ([^:]*) : ([^]*)");
    std::wsmatch match;
    return std::regex_match(line, match, form) && match[1] == std::to_wstring(severity) &&
           (sourceLine < 0 || match[2] == std::to_wstring(sourceLine)) && match[3] == function &&
           match[4] == message;
}

MATCHER_P4(HasLogForm, severity, sourceLine, function, message, "")
{
    return MatchesLogLine(arg, severity, sourceLine, function, message);
}

} // namespace

testing::Matcher<std::wstring> IsLogLine(LogSeverity severity, const std::wstring& function,
                                         const std::wstring& message)
{
    constexpr int anyLine = -1;
    return HasLogForm(severity, anyLine, function, message);
}

testing::Matcher<std::wstring> IsLogLine(LogSeverity severity, int line,
                                         const std::wstring& function, const std::wstring& message)
{
    return HasLogForm(severity, line, function, message);
}

} // namespace Toolkit::TestSupport
