#include "CommandLine.h"

#include <toolkit/files/PathManager.h>
#include <vector>

using namespace Toolkit;
using HostPlugIn::Option;

namespace {

// The options that every command has. "-from" comes first because the constructor completes the
// options in this order, and needs the value of "-from" to make other paths absolute.
constexpr Option c_commonOptions[] = {{L"from", Option::Path, false}, {L"out", Option::Path, true}};

bool IsAbsolute(const Text& path)
{
    return path.substr(0, 1) == PathManager::GetInstance()->GetPathSeparator();
}

} // namespace

bool AppendToken(Text& line, const Text& token)
{
    const Text& quote = CmdLineParser::c_strDelimiters;
    const bool needsQuotes = token.empty() ||
                             token.find_first_of(CmdLineParser::c_strSeparators) != Text::npos ||
                             token.substr(0, 1) == quote;
    if (needsQuotes && token.find(quote) != Text::npos)
        return false;
    if (!line.empty())
        line += L" ";
    line += needsQuotes ? Text(quote + token + quote) : token;
    return true;
}

Text GetCommandWord(const Text& line)
{
    std::vector<Text> tokens;
    CmdLineParser::Tokenize(line, tokens);
    const bool hasWord =
        !tokens.empty() && tokens[0].substr(0, 1) != CmdLineParser::c_strIdentifiers;
    return hasWord ? tokens[0] : Text();
}

CommandLine::CommandLine(const HostPlugIn::Command& command, const Text& line) : m_parser(line)
{
    for (const Option& option : c_commonOptions)
        AddOption(option);
    for (std::size_t i = 0; i < command.optionCount; ++i)
        AddOption(command.options[i]);
    m_parser.Parse();
    if (command.run)
        RejectUnknownOptions(line);
    for (const Option& option : c_commonOptions)
        Complete(option);
    for (std::size_t i = 0; i < command.optionCount; ++i)
        Complete(command.options[i]);
}

bool CommandLine::IsDefined(const Text& option) const
{
    const auto found = m_options.find(option);
    return found != m_options.end() && found->second->IsDefined();
}

const Text& CommandLine::GetValue(const Text& option) const
{
    const auto found = m_options.find(option);
    return found == m_options.end() ? Text::Empty() : found->second->GetValue();
}

// Registers the option as optional: Complete() checks required options, and names a missing one.
void CommandLine::AddOption(const Option& option)
{
    const smart_ptr<CmdLineOption> added(new CmdLineOption(option.name, false));
    m_options[option.name] = added;
    m_parser.AddOption(added);
}

// The parser ignores unknown options. Called only if the command's own options are known: a process
// that hands its line over does not load the plug-ins.
void CommandLine::RejectUnknownOptions(const Text& line)
{
    std::vector<Text> words;
    CmdLineParser::Tokenize(line, words);
    for (const Text& word : words) {
        if (word.substr(0, 1) == CmdLineParser::c_strIdentifiers &&
            m_options.find(word.substr(1)) == m_options.end())
            m_error = L"unknown option " + word;
    }
}

// Checks that a required option has a value, and makes a path absolute.
void CommandLine::Complete(const Option& option)
{
    const smart_ptr<CmdLineOption> parsed = m_options[option.name];
    const Text value = parsed->GetValue();
    if (option.isRequired && value.empty())
        m_error = Text(L"the option -") + option.name + L" or its value is missing";
    if (option.kind != Option::Path || value.empty() || IsAbsolute(value))
        return;
    Text path;
    PathManager::AppendPath(path, GetValue(L"from"), value);
    parsed->SetValue(path);
}
