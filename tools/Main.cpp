#include <CLI/CLI.hpp>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <new>
#include <sstream>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/system/Version.h>

#include "Commands.h"
#include "Failure.h"
#include "Output.h"
#include "VisibleText.h"

namespace Tool {
namespace {

void Complain(const std::string& message)
{
    std::cerr << "toolkit: " << MakeVisible(message) << '\n';
}

// The message is ours, except for the arguments that it quotes.
std::string MakeLinesVisible(const std::string& text)
{
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += MakeVisible(line) + '\n';
    return result;
}

// Also handles help and version, which CLI11 reports like errors.
int ReportParseEnd(const CLI::App& app, const CLI::ParseError& end)
{
    std::ostringstream output;
    std::ostringstream errors;
    const int code = app.exit(end, output, errors);
    std::cout << output.str() << std::flush;
    std::cerr << MakeLinesVisible(errors.str());
    if (!std::cout) {
        Complain("cannot write to standard output");
        return ExitError;
    }
    return code == 0 ? ExitGood : ExitError;
}

// Ends like a program that does not handle SIGPIPE.
int EndByBrokenPipe()
{
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
    return ExitError;
}

int Perform(const Action& action)
try {
    Output output;
    const int code = action(output);
    output.Flush();
    return code;
} catch (const BrokenPipe&) {
    return EndByBrokenPipe();
} catch (const Failure& failure) {
    Complain(failure.what());
    return ExitError;
} catch (const std::bad_alloc&) {
    Complain("out of memory");
    return ExitError;
}

int Run(int argc, char** argv)
{
    std::setlocale(LC_CTYPE, "");
    // A closed pipe then shows as a failed write, after which everything is cleaned up.
    std::signal(SIGPIPE, SIG_IGN);

    Action action;
    CLI::App app("Inspects the logs, settings, archives and sockets of programs built on Toolkit.",
                 "toolkit");
    app.require_subcommand(1);
    app.set_version_flag(
        "--version",
        "toolkit " +
            Toolkit::UTF8::ToUTF8(
                std::unique_ptr<Toolkit::Version>(Toolkit::Version::Create())->ToString()));
    AddLogCommand(app, action);
    AddIniCommand(app, action);
    AddZipCommand(app, action);
    AddIpcCommand(app, action);
    AddPathsCommand(app, action);
    AddAboutCommand(app, action);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        return ReportParseEnd(app, end);
    }
    return Perform(action);
}

} // namespace
} // namespace Tool

int main(int argc, char** argv)
try {
    return Tool::Run(argc, argv);
} catch (...) {
    std::fputs("toolkit: out of memory\n", stderr);
    return Tool::ExitError;
}
