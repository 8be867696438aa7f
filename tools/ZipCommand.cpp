#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Commands.h"
#include "Failure.h"
#include "InputPath.h"
#include "LineSplitter.h"
#include "Output.h"
#include "Pattern.h"
#include "StopSignals.h"
#include "ZipArchive.h"
#include "ZipExtract.h"

using namespace Toolkit;

namespace Tool {
namespace {

constexpr unsigned long long c_defaultLimitBytes = 1ULL << 30;

struct Options {
    std::string file;
    ZipSelection selection;
    std::string entry;
    std::string pattern;
    std::string directory = ".";
    unsigned long long limitBytes = c_defaultLimitBytes;
};

// Returns "-", padded to the width of a time, for an entry without a time.
std::string FormatTime(const ArchiveZipEntry& entry)
{
    const wxDateTime time = entry.GetDateTime();
    return time.IsValid() ? time.FormatISOCombined(' ').utf8_string() : "-                  ";
}

int List(const Options& options, Output& output)
{
    constexpr std::size_t sizeWidth = 12;

    const ZipArchive archive(options.file, options.selection);
    for (const auto& [wideName, entry] : archive.GetEntries()) {
        const std::string size = std::to_string(entry->GetSize());
        output.Write(std::string(sizeWidth - std::min(size.size(), sizeWidth), ' ') + size + " ");
        output.Write(FormatTime(*entry) + " ");
        output.WriteVisible(GetEntryName(*entry));
        output.Write("\n");
    }
    return archive.GetEntries().empty() ? ExitNegative : ExitSuccess;
}

int Cat(const Options& options, Output& output)
{
    ZipArchive archive(options.file, {});
    const auto found = archive.GetEntries().find(ToWideArgument(options.entry));
    if (found == archive.GetEntries().end())
        throw Failure("no entry \"" + options.entry + "\" in " + options.file);
    archive.Read(found->second, [&output](std::string_view bytes) { output.Write(bytes); });
    return ExitSuccess;
}

// Prints the matching lines of an entry; returns whether there were any.
bool SearchEntry(ZipArchive& archive, const ZipArchive::Entry& entry, const Pattern& pattern,
                 Output& output)
{
    bool isFound = false;
    unsigned long long lineNumber = 0;
    const auto printIfMatching = [&](std::string_view line) {
        ++lineNumber;
        if (!pattern.Matches(line))
            return;
        isFound = true;
        output.WriteVisible(GetEntryName(*entry));
        output.Write(":" + std::to_string(lineNumber) + ": ");
        output.WriteVisible(line);
        output.Write("\n");
    };
    LineSplitter lines;
    archive.Read(entry, [&](std::string_view bytes) { lines.Add(bytes, printIfMatching); });
    lines.Finish(printIfMatching);
    return isFound;
}

int Search(const Options& options, Output& output)
{
    const Pattern pattern(options.pattern);
    ZipArchive archive(options.file, options.selection);
    bool isFound = false;
    for (const auto& [wideName, entry] : archive.GetEntries()) {
        if (!entry->IsDir())
            isFound = SearchEntry(archive, entry, pattern, output) || isFound;
    }
    return isFound ? ExitSuccess : ExitNegative;
}

int Extract(const Options& options, Output& output)
{
    const StopSignals signals;
    ZipArchive archive(options.file, options.selection);
    try {
        ExtractZip(archive, options.file, options.directory, options.limitBytes, output);
    } catch (const Failure&) {
        // An interruption is reported as a Failure too.
        StopSignals::EndIfRequested();
        throw;
    }
    return ExitSuccess;
}

CLI::App* Add(CLI::App& zip, const char* name, const char* description,
              const std::shared_ptr<Options>& options, Action& action,
              int (*run)(const Options&, Output&))
{
    CLI::App* const command = zip.add_subcommand(name, description);
    command->add_option("file", options->file, "Path of the archive")->required();
    command->callback([options, run, &action] {
        action = [options, run](Output& output) { return run(*options, output); };
    });
    return command;
}

void AddSelection(CLI::App& command, ZipSelection& selection)
{
    static const std::map<std::string, ArchiveEntriesFlags::ArchiveEntriesType> types = {
        {"all", ArchiveEntriesFlags::AllEntries},
        {"files", ArchiveEntriesFlags::FilesOnly},
        {"directories", ArchiveEntriesFlags::DirectoriesOnly}};

    command.add_option(
        "--filter", selection.filter,
        "Only names that begin with the part of this text before its last *, ignoring case");
    command
        .add_option_function<std::string>(
            "--type", [&selection](const std::string& type) { selection.type = types.at(type); },
            "Only entries of this type: all, files or directories")
        ->check(
            // Without a description, because the help text lists the types already.
            CLI::IsMember(std::vector<std::string>{"all", "files", "directories"}).description(""));
}

} // namespace

void AddZipCommand(CLI::App& app, Action& action)
{
    CLI::App* const zip = app.add_subcommand("zip", "Inspect or extract a Zip archive");
    zip->require_subcommand(1);
    const auto options = std::make_shared<Options>();

    CLI::App* const list = Add(*zip, "list", "List the entries", options, action, List);
    AddSelection(*list, options->selection);

    CLI::App* const cat = Add(*zip, "cat", "Print the bytes of an entry", options, action, Cat);
    cat->add_option("entry", options->entry, "Name of the entry")->required();

    CLI::App* const search =
        Add(*zip, "search", "Print the lines that a regular expression matches", options, action,
            Search);
    search->add_option("pattern", options->pattern, "A regular expression")->required();
    AddSelection(*search, options->selection);

    CLI::App* const extract = Add(*zip, "extract", "Extract the entries", options, action, Extract);
    extract->add_option("directory", options->directory,
                        "Target directory (default: the current directory)");
    extract->add_option("--limit", options->limitBytes,
                        "Maximum number of bytes to write in total (default: 1 GiB)");
    AddSelection(*extract, options->selection);
}

} // namespace Tool
