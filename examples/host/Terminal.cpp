#include "Terminal.h"

#include <cstdio>
#include <cstdlib>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/logging/Log.h>

using namespace Toolkit;

namespace {

void WriteLine(std::FILE* stream, const Text& line)
{
    const TString<char> bytes = UTF8::ToUTF8(line) + '\n';
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::fflush(stream);
}

} // namespace

void Terminal::Print(const Text& line)
{
    WriteLine(stdout, line);
}

void Terminal::PrintRow(Text label, const Text& value)
{
    constexpr std::size_t labelWidth = 24;

    label.resize(labelWidth, L' ');
    Print(label + value);
}

void Terminal::Complain(const Text& message)
{
    WriteLine(stderr, L"host: " + message);
}

int Terminal::Fail(const Text& message)
{
    TOOLKIT_LOG(SeverityError) << message << ILogger::c_strLogToken3;
    Complain(message);
    return EXIT_FAILURE;
}
