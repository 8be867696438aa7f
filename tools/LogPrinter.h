#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "LogClock.h"
#include "LogFilter.h"
#include "Output.h"

namespace Tool {

/// Prints the lines of a log that a filter accepts.
class LogPrinter {
public:
    enum class Form {
        Text, ///< In columns on a terminal; otherwise with one space between the parts.
        Json, ///< One object per line.
    };

    LogPrinter(Output& output, const LogFilter& filter, Form form);

    /// Sets the clock that converts tick counts. If it does not know the time of a line, the text
    /// form shows the tick count instead, and the JSON object has no "time".
    void SetClock(const LogClock& clock) { m_clock = clock; }

    void Print(const LogRecord& record);

    /// Returns how many records were printed; each is a line with the further lines of its message.
    unsigned long long GetCount() const { return m_count; }

private:
    std::optional<WallTime> FindTime(const LogHeader& header) const;
    void PrintText(const LogRecord& record);
    void PrintTime(const LogHeader& header);
    void PrintSeverity(int severity);
    void PrintLocation(const LogHeader& header);
    void PrintMessage(std::string_view message);
    void PrintJson(const LogRecord& record);
    void PrintPadded(std::string_view text, std::size_t width, Output::Colour colour);
    const std::string& FormatSecond(WallTime time);

    Output& m_output;
    const LogFilter& m_filter;
    const Form m_form;
    LogClock m_clock;
    unsigned long long m_count = 0;
    WallTime m_second = -1;   // the second that m_secondText shows
    std::string m_secondText; // "2009-03-05 06:04:09"
    std::string m_location;   // a member only to reuse its memory
};

} // namespace Tool
