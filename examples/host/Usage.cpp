#include "Usage.h"

namespace {

constexpr const wchar_t* c_lines[] = {
    L"usage: host [-config <file>] [-level <0 to 4>] [-plugins <folder>] [-find <text>] [-quiet]",
    L"       host -serve [-config <file>] [-level <0 to 4>] [-plugins <folder>] [-quiet]",
    L"       host <command> <its options> -out <file for the result>",
    L"       host -quit | -restart | -help",
    L"",
    L"  -config   the settings, instead of host.ini in the configuration path",
    L"  -level    what is logged, from 0 for errors alone to 4 for everything",
    L"  -plugins  the folder with the plug-ins",
    L"  -find     the text to look for",
    L"  -quiet    shows only what goes wrong",
    L"  -serve    keeps running and takes commands from later starts",
    L"  -quit     ends the serving host after the commands that it has",
    L"  -restart  ends it and starts it again",
    L"",
    L"A start without -quiet shows the commands of the plug-ins. The value of an option cannot",
    L"begin with a dash: for a pattern \"[-]x\" does.",
};

} // namespace

void PrintUsage()
{
    for (const wchar_t* const line : c_lines)
        Print(line);
}

int ComplainWithUsage(const Text& error)
{
    constexpr int usageError = 2;

    Complain(error);
    for (const wchar_t* const line : c_lines)
        PrintError(line);
    return usageError;
}
