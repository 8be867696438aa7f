#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "LogReader.h"
#include "Pattern.h"

namespace Tool {

/// Selects lines of a log. Each setter adds a condition, unless its list or text is empty; without
/// conditions, all lines are accepted. Text that is not in the form of a log line has no severity
/// and no function, so a condition on these rejects it; all of it counts as the message.
class LogFilter {
public:
    /// Accepts only lines at least as severe as `severity`, an index into `c_severityNames`.
    void SetSeverity(int severity) { m_severity = severity; }

    /// Accepts only lines logged by one of these functions.
    void SetFunctions(const std::vector<std::string>& functions) { m_functions = functions; }

    /// Accepts only lines whose message contains `text`.
    void SetText(const std::string& text) { m_text = text; }

    /// Accepts only lines whose message the regular expression `pattern` matches. Throws a
    /// `Failure` if it is invalid.
    void SetPattern(const std::string& pattern) { m_pattern.emplace(pattern); }

    bool Accepts(const LogRecord& record) const;

private:
    bool AcceptsHeader(const LogHeader& header) const;
    bool Matches(std::string_view message) const;

    std::optional<int> m_severity;
    std::vector<std::string> m_functions;
    std::string m_text;
    std::optional<Pattern> m_pattern;
};

} // namespace Tool
