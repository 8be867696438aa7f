#pragma once

#include <map>
#include <toolkit/config/CmdLineParser.h>

#include "PlugIn.h"
#include "Terminal.h"

/// Appends `token` to `line`, quoted if necessary, so that `CmdLineParser::Tokenize` returns it as
/// one token. False, with `line` unchanged, if `token` begins with a quote, or contains both a
/// quote and a space or tab.
bool AppendToken(Text& line, const Text& token);

/// Returns the first word of a line; empty if the line is empty or begins with an option.
Text GetCommandWord(const Text& line);

/// The options of a command line: the command's own, and two that every command has. These are
/// "-out", the file for the result, and "-from", the directory in which the line was typed.
class CommandLine {
public:
    /// Parses `line`. Unknown options are errors unless `command.run` is null: the command's own
    /// options are then not known.
    CommandLine(const HostPlugIn::Command& command, const Text& line);

    /// Returns why the command line is invalid; empty if it is valid.
    const Text& GetError() const { return m_error; }

    bool IsDefined(const Text& option) const;
    /// Empty if the option has no value.
    const Text& GetValue(const Text& option) const;

private:
    void AddOption(const HostPlugIn::Option& option);
    void RejectUnknownOptions(const Text& line);
    void Complete(const HostPlugIn::Option& option);

    std::map<Text, Toolkit::smart_ptr<Toolkit::CmdLineOption>> m_options;
    Toolkit::CmdLineParser m_parser;
    Text m_error;
};
