#pragma once

#include <map>
#include <toolkit/config/CmdLineParser.h>

#include "PlugIn.h"
#include "Terminal.h"

/// Appends `token` to a line, so that `CmdLineParser::Tokenize` splits it off again. False if the
/// token contains both quotes and spaces.
bool AppendToken(Text& line, const Text& token);

/// The first word of a line; empty if the line begins with an option.
Text GetCommandWord(const Text& line);

/// The options of a command line: the command's own, and "-out", the file for the result, and
/// "-from", the directory in which the line was typed, which every command has.
class CommandLine {
public:
    CommandLine(const HostPlugIn::Command& command, const Text& line);

    /// Why the command line cannot run; empty if it can.
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
