#include "Terminal.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <sys/ioctl.h>
#include <toolkit/encoding/StringConvert.h>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/logging/Log.h>
#include <unistd.h>

#include "VisibleText.h"

using namespace Toolkit;

namespace {

const char* const c_clearLine = "\r\033[K";

std::mutex s_lock;
bool s_isBarShown = false; // guarded by s_lock

void Write(std::FILE* stream, const TString<char>& bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::fflush(stream);
}

void WriteLine(std::FILE* stream, const Text& line)
{
    const TString<char> bytes = UTF8::ToUTF8(MakeVisible(line)) + '\n';
    const std::lock_guard<std::mutex> guard(s_lock);
    if (s_isBarShown)
        Write(stdout, c_clearLine);
    s_isBarShown = false;
    Write(stream, bytes);
}

// Whether standard output is a terminal that can rewrite its last line.
bool CanShowBar()
{
    const char* const terminal = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) == 1 && terminal && TString<char>(terminal) != "dumb";
}

std::size_t CountColumns()
{
    constexpr std::size_t defaultColumns = 80;

    winsize size = {};
    const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : defaultColumns;
}

Text ToText(unsigned long long value)
{
    return StringConvert::UStringFromUInt64(value);
}

// Returns, for example: [##########----------]  50 %
Text MakeBar(unsigned long long done, unsigned long long total)
{
    constexpr std::size_t width = 20;

    const double fraction = static_cast<double>(std::min(done, total)) / static_cast<double>(total);
    const auto filled = static_cast<std::size_t>(fraction * width);
    const Text percent = ToText(static_cast<unsigned long long>(fraction * 100));
    return L"[" + std::wstring(filled, L'#') + std::wstring(width - filled, L'-') + L"] " +
           std::wstring(3 - percent.size(), L' ') + percent + L" % ";
}

void DrawLine(const Text& line)
{
    // A line of the full width would make the terminal wrap.
    const TString<char> bytes = UTF8::ToUTF8(MakeVisible(line).substr(0, CountColumns() - 1));
    const std::lock_guard<std::mutex> guard(s_lock);
    Write(stdout, c_clearLine + bytes);
    s_isBarShown = true;
}

} // namespace

void Print(const Text& line)
{
    WriteLine(stdout, line);
}

void PrintRow(Text label, const Text& value)
{
    constexpr std::size_t labelWidth = 24;

    label += std::wstring(label.size() < labelWidth ? labelWidth - label.size() : 1, L' ');
    Print(label + value);
}

void ShowProgress(const Text& title, unsigned long long done, unsigned long long total,
                  const Text& unit)
{
    const Text count = ToText(done) + (total > 0 ? L" of " + ToText(total) : Text()) + L" " + unit;
    if (!CanShowBar())
        Print(title + L": " + count);
    else
        DrawLine(title + L": " + (total > 0 ? MakeBar(done, total) : Text()) + count);
}

void PrintError(const Text& line)
{
    WriteLine(stderr, line);
}

void Complain(const Text& message)
{
    PrintError(L"host: " + message);
}

int Fail(const Text& message)
{
    TOOLKIT_LOG(SeverityError) << MakeVisible(message) << ILogger::c_strLogToken3;
    Complain(message);
    return EXIT_FAILURE;
}
