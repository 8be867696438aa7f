#include "CommandLine.h"

#include <toolkit/files/PathManager.h>
#include <vector>

using namespace Toolkit;
using HostPlugIn::Option;

namespace {

constexpr Option c_hostOptions[] = {{L"from", Option::Path, false}, {L"out", Option::Path, true}};

bool IsAbsolute(const Text& path)
{
    return path.substr(0, 1) == PathManager::GetInstance()->GetPathSeparator();
}

} // namespace

bool AppendToken(Text& line, const Text& token)
{
    const Text& quote = CmdLineParser::c_strDelimiters;
    const bool isQuoted = token.empty() ||
                          token.find_first_of(CmdLineParser::c_strSeparators) != Text::npos ||
                          token.substr(0, 1) == quote;
    if (isQuoted && token.find(quote) != Text::npos)
        return false;
    line += line.empty() ? L"" : L" ";
    line += isQuoted ? Text(quote + token + quote) : token;
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
    for (const Option& option : c_hostOptions)
        AddOption(option);
    for (std::size_t i = 0; i < command.optionCount; ++i)
        AddOption(command.options[i]);
    m_parser.Parse();
    if (command.run)
        RejectUnknownOptions(line);
    for (const Option& option : c_hostOptions)
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

// Tells the parser that no option is required: Complete() checks that, and can name the option.
void CommandLine::AddOption(const Option& option)
{
    const smart_ptr<CmdLineOption> added(new CmdLineOption(option.name, false));
    m_options[option.name] = added;
    m_parser.AddOption(added);
}

// The parser ignores unknown options. Only the serving host calls this: a start that hands its line
// over does not know the options of the commands.
void CommandLine::RejectUnknownOptions(const Text& line)
{
    std::vector<Text> words;
    CmdLineParser::Tokenize(line, words);
    for (const Text& word : words) {
        if (word.substr(0, 1) == CmdLineParser::c_strIdentifiers &&
            m_options.find(word.substr(1)) == m_options.end())
            m_error = L"there is no option " + word;
    }
}

// Checks that a required option has a value, and makes paths absolute. "-from", to which they are
// relative, is the first option completed.
void CommandLine::Complete(const Option& option)
{
    const smart_ptr<CmdLineOption> parsed = m_options[option.name];
    const Text value = parsed->GetValue();
    if (option.isRequired && value.empty())
        m_error = Text(L"the option -") + option.name + L" is missing, or its value is";
    if (option.kind != Option::Path || value.empty() || IsAbsolute(value))
        return;
    Text path;
    PathManager::AppendPath(path, GetValue(L"from"), value);
    parsed->SetValue(path);
}
