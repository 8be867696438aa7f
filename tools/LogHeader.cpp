#include "LogHeader.h"

#include <charconv>

namespace Tool {
namespace {

constexpr std::string_view c_separator = " : ";
constexpr std::string_view c_wxBegin = "  : wx : ";

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

// Removes the number at the beginning of `text` and stores it; false if there is none.
bool TakeNumber(std::string_view& text, std::uint32_t& number)
{
    const char* const end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc())
        return false;
    text.remove_prefix(static_cast<std::size_t>(next - text.data()));
    return true;
}

bool TakeSeparator(std::string_view& text)
{
    if (text.substr(0, c_separator.size()) != c_separator)
        return false;
    text.remove_prefix(c_separator.size());
    return true;
}

// Removes the severity and the time and stores them; false if they are missing.
bool TakeBegin(std::string_view& text, LogHeader& header)
{
    if (text.size() < 2 || text[0] < '0' || text[0] > '4' || text[1] != ' ')
        return false;
    header.severity = text[0] - '0';
    text.remove_prefix(1);
    header.isOfWx = text.substr(0, c_wxBegin.size()) == c_wxBegin;
    text.remove_prefix(header.isOfWx ? c_wxBegin.size() : 1);
    return TakeNumber(text, header.tick) && TakeSeparator(text);
}

} // namespace

bool BeginsLogLine(std::string_view text)
{
    LogHeader header;
    return TakeBegin(text, header) && (header.isOfWx || (!text.empty() && IsDigit(text.front())));
}

std::optional<LogHeader> ParseLogHeader(std::string_view line)
{
    LogHeader header;
    if (!TakeBegin(line, header))
        return {};
    if (!header.isOfWx) {
        const std::string_view rest = line;
        std::uint32_t ignored = 0;
        if (!TakeNumber(line, ignored))
            return {};
        header.sourceLine = rest.substr(0, rest.size() - line.size());
        const std::size_t end = TakeSeparator(line) ? line.find(c_separator) : line.npos;
        if (end == line.npos)
            return {};
        header.function = line.substr(0, end);
        line.remove_prefix(end + c_separator.size());
    }
    header.message = line;
    return header;
}

} // namespace Tool
