#include "Usage.h"

namespace {

constexpr const wchar_t* c_lines[] = {
    L"usage: host [-config <file>] [-level <0 to 4>] [-plugins <folder>] [-find <text>] [-quiet]",
    L"       host -serve [-config <file>] [-level <0 to 4>] [-plugins <folder>] [-quiet]",
    L"       host <command> <its options> -out <file for the result>",
    L"       host -quit | -restart | -help",
    L"",
    L"  -config   the settings file, instead of host.ini in the configuration path",
    L"  -level    what is logged, from 0 (only errors) to 4 (everything)",
    L"  -plugins  the folder with the plug-ins",
    L"  -find     the text to look for",
    L"  -quiet    prints neither the facts at the start nor the result of the search",
    L"  -serve    keeps running, and runs the commands of hosts that are started later",
    L"  -quit     ends the serving host after it has run the commands that it received",
    L"  -restart  does the same, and then starts the host again",
    L"",
    L"Without -quiet, the host lists the commands of the plug-ins when it starts. The value of an",
    L"option cannot begin with a dash; write a pattern as \"[-]x\" instead.",
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
