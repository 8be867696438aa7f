#pragma once

#include <optional>
#include <string>
#include <vector>

#include "LogReader.h"
#include "Pattern.h"

namespace Tool {

/// Which lines of a log are wanted; all as long as nothing is set.
class LogFilter {
public:
    /// Lines at least as severe as `severity`.
    void SetSeverity(int severity) { m_severity = severity; }

    /// Lines of one of these functions.
    void SetFunctions(const std::vector<std::string>& functions) { m_functions = functions; }

    /// Lines with this text in their message.
    void SetText(const std::string& text) { m_text = text; }

    /// Lines whose message this regular expression matches. Throws a `Failure` when it is invalid.
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
