#pragma once

#include <map>
#include <toolkit/config/CmdLineParser.h>

#include "PlugIn.h"
#include "Terminal.h"

/// Appends `token` to a line that `CmdLineParser::Tokenize` splits again. False when that is not
/// possible: a token cannot hold both quotes and spaces.
bool AppendToken(Text& line, const Text& token);

/// The first word of a line; empty when it begins with an option.
Text CommandWord(const Text& line);

/// The options of a command in a line, and those that every command has: "-out", the
/// file for the result, and "-from", the directory in which the line was typed.
class CommandLine {
public:
    CommandLine(const HostPlugIn::Command& command, const Text& line);

    /// Why the command cannot run by this line; empty when it can.
    const Text& GetFault() const { return m_fault; }

    bool IsDefined(const Text& option) const;
    const Text& GetValue(const Text& option) const;

private:
    void AddOption(const HostPlugIn::Option& option);
    void FindUnknownOption(const Text& line);
    void Complete(const HostPlugIn::Option& option);

    std::map<Text, Toolkit::smart_ptr<Toolkit::CmdLineOption>> m_options;
    Toolkit::CmdLineParser m_parser;
    Text m_fault;
};
