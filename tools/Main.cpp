#include <CLI/CLI.hpp>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "Commands.h"
#include "Failure.h"
#include "LibraryVersion.h"
#include "Output.h"
#include "VisibleText.h"

namespace Tool {
namespace {

void Complain(const std::string& message)
{
    std::cerr << "toolkit: " << MakeVisible(message) << '\n';
}

// Keeps line feeds: messages of CLI11 have several lines, and only the arguments that they quote
// are untrusted.
std::string MakeLinesVisible(const std::string& text)
{
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += MakeVisible(line) + '\n';
    return result;
}

// Ends the process like one that does not handle SIGPIPE. Returns only if the signal is blocked.
int EndByBrokenPipe()
{
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
    return ExitError;
}

// Runs `action` and writes its output, even if it throws a Failure.
int RunAction(const Action& action)
{
    Output output;
    try {
        const int code = action(output);
        output.Flush();
        return code;
    } catch (const Failure&) {
        output.Flush();
        throw;
    }
}

// Runs `action` and reports its failure; returns the exit code.
int Perform(const Action& action)
try {
    return RunAction(action);
} catch (const BrokenPipe&) {
    return EndByBrokenPipe();
} catch (const Failure& failure) {
    Complain(failure.what());
    return ExitError;
} catch (const std::bad_alloc&) {
    Complain("out of memory");
    return ExitError;
}

// CLI11 reports a missing argument rather than an unknown word, but the unknown word is usually the
// real mistake.
std::string DescribeMistake(const CLI::App* app, const CLI::Error& mistake)
{
    std::string text = mistake.what();
    const std::vector<std::string> unknown = app->remaining(true);
    if (dynamic_cast<const CLI::RequiredError*>(&mistake) && !unknown.empty())
        text = (unknown[0][0] == '-' ? "unknown option \"" : "unknown subcommand \"") + unknown[0] +
               "\"";
    return "toolkit: " + text + "\nRun with --help for more information.\n";
}

// Also prints the help and the version, which CLI11 throws like errors.
int ReportParseError(const CLI::App& app, const CLI::ParseError& error)
{
    std::ostringstream text;
    std::ostringstream errors;
    const int code = app.exit(error, text, errors);
    std::cerr << MakeLinesVisible(errors.str());
    return Perform([&](Output& output) {
        output.Write(text.str());
        return code == 0 ? ExitSuccess : ExitError;
    });
}

int Run(int argc, char** argv)
{
    std::setlocale(LC_CTYPE, "");
    // Writing to a closed pipe then fails instead of ending the process, so destructors run.
    std::signal(SIGPIPE, SIG_IGN);

    Action action;
    CLI::App app("Inspects the logs, settings, archives and sockets of programs built on Toolkit.",
                 "toolkit");
    app.require_subcommand(1);
    app.failure_message(DescribeMistake);
    app.set_version_flag("--version", "toolkit " + GetLibraryVersion());
    AddLogCommand(app, action);
    AddIniCommand(app, action);
    AddZipCommand(app, action);
    AddIpcCommand(app, action);
    AddPathsCommand(app, action);
    AddAboutCommand(app, action);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return ReportParseError(app, error);
    }
    return Perform(action);
}

} // namespace
} // namespace Tool

int main(int argc, char** argv)
try {
    return Tool::Run(argc, argv);
} catch (const std::bad_alloc&) {
    std::fputs("toolkit: out of memory\n", stderr);
    return Tool::ExitError;
} catch (const std::exception& error) {
    std::fprintf(stderr, "toolkit: %s\n", error.what());
    return Tool::ExitError;
}
