#include <CLI/CLI.hpp>
#include <algorithm>
#include <fcntl.h>
#include <iterator>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "Commands.h"
#include "Failure.h"
#include "LogFiles.h"
#include "LogFollowing.h"
#include "LogHistory.h"
#include "LogSeverities.h"
#include "Output.h"
#include "StopSignals.h"
#include "TemporaryFile.h"

namespace Tool {
namespace {

struct Options {
    std::string log;
    std::string severity;
    std::vector<std::string> functions;
    std::string text;
    std::string pattern;
    bool isFollowing = false;
    bool isJson = false;

    bool HasFilter() const
    {
        return !severity.empty() || !functions.empty() || !text.empty() || !pattern.empty();
    }
};

LogFilter MakeFilter(const Options& options)
{
    LogFilter filter;
    const auto* const severity =
        std::find(std::begin(c_severityNames), std::end(c_severityNames), options.severity);
    if (severity != std::end(c_severityNames))
        filter.SetSeverity(static_cast<int>(severity - std::begin(c_severityNames)));
    filter.SetFunctions(options.functions);
    filter.SetText(options.text);
    if (!options.pattern.empty())
        filter.SetPattern(options.pattern);
    return filter;
}

int List(Output& output)
{
    constexpr std::size_t sizeWidth = 12;

    for (const LogFileEntry& file : FindFilesOfUser()) {
        const std::string size = std::to_string(file.size);
        output.Write(FormatTime(file.written.tv_sec) + " ");
        output.Write(std::string(sizeWidth - std::min(size.size(), sizeWidth), ' ') + size + " ");
        output.WriteVisible(file.path);
        output.Write("\n");
    }
    return ExitSuccess;
}

// Opens a file for reading at any offset. Anything but a regular file is copied to one.
Descriptor OpenFile(const std::string& path)
{
    Descriptor file(path == "-" ? ::dup(STDIN_FILENO)
                                : ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0)
        throw MakeSystemFailure("cannot open " + path);
    if (S_ISDIR(status.st_mode))
        throw Failure("cannot read " + path + ": Is a directory");
    return S_ISREG(status.st_mode) ? std::move(file) : SpoolToFile(file.Get());
}

Descriptor OpenLog(const std::string& path)
{
    Descriptor file = OpenFile(path);
    if (!LooksLikeLog(file.Get()))
        throw Failure((path == "-" ? "standard input" : path) + " is not a log");
    return file;
}

LogPrinter::Form ChooseForm(const Options& options)
{
    return options.isJson ? LogPrinter::Form::Json : LogPrinter::Form::Text;
}

int Show(const Options& options, Output& output)
{
    const LogFilter filter = MakeFilter(options);
    LogPrinter printer(output, filter, ChooseForm(options));
    const Descriptor file = OpenLog(FindLogPath(options.log));
    PrintHistory(file.Get(), printer);
    return options.HasFilter() && printer.GetCount() == 0 ? ExitNegative : ExitSuccess;
}

int ShowAndFollow(const Options& options, Output& output)
{
    const LogFilter filter = MakeFilter(options);
    LogPrinter printer(output, filter, ChooseForm(options));
    const LogName name = ParseLogName(options.log);
    const std::vector<LogFileEntry> known = FindFilesOfLog(name);
    Descriptor file = OpenLog(FindLogPath(options.log));
    const LogPosition position = PrintHistory(file.Get(), printer);
    const StopSignals signals;
    output.Flush();
    Follow(name, LogFollower(std::move(file), position, printer), known, printer, output);
    return ExitSuccess;
}

int Run(const Options& options, Output& output)
{
    if (options.isFollowing && (options.log.empty() || options.log == "-"))
        throw Failure("--follow needs a file or a name");
    if (options.log.empty() && (options.isJson || options.HasFilter()))
        throw Failure("filters and --json need a file or a name");
    if (options.log.empty())
        return List(output);
    return options.isFollowing ? ShowAndFollow(options, output) : Show(options, output);
}

} // namespace

void AddLogCommand(CLI::App& app, Action& action)
{
    CLI::App* const log = app.add_subcommand("log", "Print a log in time order, or list the logs");
    const auto options = std::make_shared<Options>();
    const auto rejectEmpty = [](const std::string& name) {
        return name.empty() ? std::string("the name is empty") : std::string();
    };
    log->add_option("log", options->log,
                    "Path of a file, name of a logger, or - for standard input (default: list the "
                    "logs of this user)")
        ->check(rejectEmpty);
    log->add_option("-s,--severity", options->severity, "Only lines at least this severe")
        ->check(CLI::IsMember(
            std::vector<std::string>(std::begin(c_severityNames), std::end(c_severityNames))));
    log->add_option("-f,--function", options->functions,
                    "Only lines logged by this function (repeatable)")
        ->expected(1)
        ->take_all();
    log->add_option("-t,--text", options->text, "Only lines whose message contains this text");
    log->add_option("-e,--regex", options->pattern,
                    "Only lines whose message this regular expression matches");
    log->add_flag("-F,--follow", options->isFollowing, "Keep printing new lines");
    log->add_flag("-j,--json", options->isJson, "Print each line as a JSON object");
    log->callback([options, &action] {
        action = [options](Output& output) { return Run(*options, output); };
    });
}

} // namespace Tool
