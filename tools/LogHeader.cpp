#include "LogHeader.h"

#include <charconv>
#include <system_error>

namespace Tool {
namespace {

constexpr std::string_view c_separator = " : ";
constexpr std::string_view c_wxPrefix = "  : wx : ";

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

// Removes the number at the beginning of `text` and stores it; false if there is none.
bool ParseNumber(std::string_view& text, std::uint32_t& number)
{
    const char* const end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc())
        return false;
    text.remove_prefix(static_cast<std::size_t>(next - text.data()));
    return true;
}

bool SkipSeparator(std::string_view& text)
{
    if (!text.starts_with(c_separator))
        return false;
    text.remove_prefix(c_separator.size());
    return true;
}

// Removes the severity and the time and stores them; false if they are missing.
bool ParseLineStart(std::string_view& text, LogHeader& header)
{
    if (text.size() < 2 || text[0] < '0' || text[0] > '4' || text[1] != ' ')
        return false;
    header.severity = text[0] - '0';
    text.remove_prefix(1);
    header.isFromWx = text.starts_with(c_wxPrefix);
    text.remove_prefix(header.isFromWx ? c_wxPrefix.size() : 1);
    return ParseNumber(text, header.tick) && SkipSeparator(text);
}

// Removes the source line and the function and stores them; false if they are missing.
bool ParseLocation(std::string_view& text, LogHeader& header)
{
    const std::string_view start = text;
    std::uint32_t ignored = 0;
    if (!ParseNumber(text, ignored))
        return false;
    header.sourceLine = start.substr(0, start.size() - text.size());
    if (!SkipSeparator(text))
        return false;
    const std::size_t end = text.find(c_separator);
    if (end == std::string_view::npos)
        return false;
    header.function = text.substr(0, end);
    text.remove_prefix(end + c_separator.size());
    return true;
}

} // namespace

bool StartsLikeLogLine(std::string_view text)
{
    LogHeader header;
    return ParseLineStart(text, header) &&
           (header.isFromWx || (!text.empty() && IsDigit(text.front())));
}

std::optional<LogHeader> ParseLogHeader(std::string_view line)
{
    LogHeader header;
    if (!ParseLineStart(line, header))
        return {};
    if (header.isFromWx)
        header.function = "wx";
    else if (!ParseLocation(line, header))
        return {};
    header.message = line;
    return header;
}

} // namespace Tool
