#include "LogPrinter.h"

#include <algorithm>
#include <ctime>

#include "Json.h"
#include "LogSeverities.h"
#include "VisibleText.h"

namespace Tool {
namespace {

constexpr WallTime c_msPerSecond = 1000;
constexpr std::size_t c_severityWidth = 7;
constexpr std::size_t c_locationWidth = 28;

constexpr Output::Colour c_severityColours[] = {Output::Red, Output::Yellow, Output::Green,
                                                Output::Cyan, Output::Grey};

void AppendMilliseconds(std::string& text, WallTime time)
{
    const auto milliseconds = static_cast<int>(time % c_msPerSecond);
    text += '.';
    for (const int unit : {100, 10, 1})
        text += static_cast<char>('0' + milliseconds / unit % 10);
}

std::string FormatIso(WallTime time)
{
    const std::time_t seconds = time / c_msPerSecond;
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    char digits[64];
    std::string text(digits, std::strftime(digits, sizeof digits, "%Y-%m-%dT%H:%M:%S", &parts));
    AppendMilliseconds(text, time);
    return text + 'Z';
}

} // namespace

LogPrinter::LogPrinter(Output& output, const LogFilter& filter, Form form)
    : m_output(output), m_filter(filter), m_form(form)
{
}

void LogPrinter::Print(const LogRecord& record)
{
    if (!m_filter.Accepts(record))
        return;
    ++m_count;
    if (m_form == Form::Json)
        PrintJson(record);
    else
        PrintText(record);
}

std::optional<WallTime> LogPrinter::FindTime(const LogHeader& header) const
{
    if (header.isFromWx)
        return header.tick * c_msPerSecond;
    return m_clock.FindTime(header.tick);
}

void LogPrinter::PrintText(const LogRecord& record)
{
    if (record.header) {
        PrintTime(*record.header);
        PrintSeverity(record.header->severity);
        PrintLocation(*record.header);
        PrintMessage(record.header->message);
        return;
    }
    // In the columns of a log line, without time and function.
    m_output.Write("- ");
    PrintPadded("cut", c_severityWidth, Output::Grey);
    PrintPadded("-", c_locationWidth, Output::Grey);
    PrintMessage(record.text);
}

void LogPrinter::PrintTime(const LogHeader& header)
{
    const std::optional<WallTime> time = FindTime(header);
    if (!time) {
        m_output.Write(std::to_string(header.tick), Output::Grey);
    } else {
        std::string text = FormatSecond(*time);
        AppendMilliseconds(text, *time);
        m_output.Write(text, Output::Grey);
    }
    m_output.Write(" ");
}

// Cached, because converting the time takes longer than all other steps: lines of the same second
// use the same string.
const std::string& LogPrinter::FormatSecond(WallTime time)
{
    const std::time_t second = time / c_msPerSecond;
    if (second == m_second)
        return m_secondText;
    m_secondText = FormatTime(second);
    m_second = second;
    return m_secondText;
}

void LogPrinter::PrintSeverity(int severity)
{
    PrintPadded(c_severityNames[severity], c_severityWidth, c_severityColours[severity]);
}

void LogPrinter::PrintLocation(const LogHeader& header)
{
    m_location.clear();
    AppendVisible(m_location, header.function);
    if (!header.isFromWx)
        m_location.append(":").append(header.sourceLine);
    PrintPadded(m_location, c_locationWidth, Output::Grey);
}

// The lines of a message after its first one are indented.
void LogPrinter::PrintMessage(std::string_view message)
{
    for (std::size_t end = 0; (end = message.find('\n')) != std::string_view::npos;) {
        m_output.WriteVisible(message.substr(0, end));
        m_output.Write("\n    ");
        message.remove_prefix(end + 1);
    }
    m_output.WriteVisible(message);
    m_output.Write("\n");
}

void LogPrinter::PrintPadded(std::string_view text, std::size_t width, Output::Colour colour)
{
    constexpr std::string_view spaces = "                                ";

    m_output.Write(text, colour);
    const bool isPadded = m_output.IsTerminal() && text.size() < width;
    m_output.Write(spaces.substr(0, isPadded ? width - text.size() + 1 : 1));
}

void LogPrinter::PrintJson(const LogRecord& record)
{
    std::string object = "{";
    if (!record.header) {
        object += "\"cut\":true,\"message\":";
        AppendJson(object, record.text);
    } else {
        const LogHeader& header = *record.header;
        if (const std::optional<WallTime> time = FindTime(header))
            object += "\"time\":\"" + FormatIso(*time) + "\",";
        if (!header.isFromWx)
            object += "\"tick\":" + std::to_string(header.tick) + ",";
        object.append("\"severity\":\"").append(c_severityNames[header.severity]).append("\",");
        if (!header.isFromWx)
            object.append("\"line\":").append(header.sourceLine).append(",");
        object += "\"function\":";
        AppendJson(object, header.function);
        object += ",\"message\":";
        AppendJson(object, header.message);
    }
    m_output.Write(object + "}\n");
}

} // namespace Tool
