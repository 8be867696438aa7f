#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <toolkit/config/IniFile.h>
#include <vector>

#include "Commands.h"
#include "IniCheck.h"
#include "IniText.h"
#include "InputPath.h"
#include "Output.h"

using namespace Toolkit;

namespace Tool {
namespace {

using Text = TString<wchar_t>;

struct Options {
    std::string file;
    std::string section;
    std::string key;
};

IniFile Load(const InputPath& path)
{
    IniFile ini(path.GetWide());
    if (!ini.IsLoaded())
        throw MakeReadFailure(path);
    return ini;
}

// Returns each section once, in the order of the file.
std::vector<Text> ListSections(const InputPath& path)
{
    std::vector<Text> sections;
    for (const Text& line : ReadIniLines(path)) {
        if (!IsIniHeader(line))
            continue;
        const Text section = GetIniSection(line);
        if (std::find(sections.begin(), sections.end(), section) == sections.end())
            sections.push_back(section);
    }
    return sections;
}

int List(const Options& options, Output& output)
{
    const InputPath path(options.file);
    const IniFile ini = Load(path);
    for (const Text& section : ListSections(path)) {
        output.Write("[" + ToVisibleUtf8(section) + "]\n", Output::Cyan);
        std::vector<Text> keys;
        ini.GetKeyList(section, keys);
        for (const Text& key : keys)
            output.Write(ToVisibleUtf8(key) + "=" +
                         ToVisibleUtf8(ini.GetValue(section, key, Text::Empty())) + "\n");
    }
    return ExitSuccess;
}

int Get(const Options& options, Output& output)
{
    const IniFile ini = Load(InputPath(options.file));
    const Text section = ToWideArgument(options.section);
    const Text key = ToWideArgument(options.key);
    if (!ini.HasValue(section, key))
        return ExitNegative;
    output.Write(ToVisibleUtf8(ini.GetValue(section, key, Text::Empty())) + "\n");
    return ExitSuccess;
}

int Check(const Options& options, Output& output)
{
    const InputPath path(options.file);
    const std::vector<IniFinding> findings = CheckIni(path);
    for (const IniFinding& finding : findings) {
        output.WriteVisible(path.GetArgument());
        output.Write(":" + std::to_string(finding.line) + ": " + finding.text + "\n");
    }
    return findings.empty() ? ExitSuccess : ExitNegative;
}

CLI::App* Add(CLI::App& ini, const char* name, const char* description,
              const std::shared_ptr<Options>& options, Action& action,
              int (*run)(const Options&, Output&))
{
    CLI::App* const command = ini.add_subcommand(name, description);
    command->add_option("file", options->file, "Path of a file, or - for standard input")
        ->required();
    command->callback([options, run, &action] {
        action = [options, run](Output& output) { return run(*options, output); };
    });
    return command;
}

} // namespace

void AddIniCommand(CLI::App& app, Action& action)
{
    CLI::App* const ini = app.add_subcommand("ini", "Inspect an INI file");
    ini->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    Add(*ini, "list", "Print all sections, keys and values", options, action, List);
    CLI::App* const get = Add(*ini, "get", "Print one value", options, action, Get);
    get->add_option("section", options->section, "Name of the section")->required();
    get->add_option("key", options->key, "Name of the key")->required();
    Add(*ini, "check", "Report what a program ignores or may read unexpectedly", options, action,
        Check);
}

} // namespace Tool
