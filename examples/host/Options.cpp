#include "Options.h"

#include <algorithm>
#include <iterator>

using namespace Toolkit;

namespace {

struct OptionForm {
    const wchar_t* name;
    bool takesValue;
};
constexpr OptionForm c_options[] = {{L"config", true},   {L"find", true},   {L"h", false},
                                    {L"help", false},    {L"level", true},  {L"-help", false},
                                    {L"plugins", true},  {L"quiet", false}, {L"quit", false},
                                    {L"restart", false}, {L"serve", false}};

bool IsOption(const Text& word)
{
    return word.substr(0, 1) == CmdLineParser::c_strIdentifiers;
}

} // namespace

Options::Options(const std::vector<Text>& words)
{
    Parse(words);
    m_error = FindError(words);
}

Text Options::GetValue(const Text& name, const Text& defaultValue) const
{
    const smart_ptr<CmdLineOption>& option = m_options.at(name);
    return option->IsDefined() ? option->GetValue() : defaultValue;
}

void Options::Parse(const std::vector<Text>& words)
{
    std::vector<const wchar_t*> pointers;
    pointers.reserve(words.size());
    for (const Text& word : words)
        pointers.push_back(word.c_str());
    CmdLineParser parser(static_cast<int>(pointers.size()), pointers.data());
    for (const OptionForm& form : c_options) {
        const smart_ptr<CmdLineOption> option(new CmdLineOption(form.name, false));
        m_options[form.name] = option;
        parser.AddOption(option);
    }
    parser.Parse();
}

// The value of an option is the next word, which must not begin with a dash.
Text Options::FindError(const std::vector<Text>& words) const
{
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (!IsOption(*word))
            return L"\"" + *word + L"\" is neither an option nor the value of one";
        const auto form =
            std::find_if(std::begin(c_options), std::end(c_options),
                         [&](const OptionForm& f) { return word->substr(1) == f.name; });
        if (form == std::end(c_options))
            return L"unknown option " + *word;
        if (!form->takesValue)
            continue;
        if (std::next(word) == words.end() || IsOption(*std::next(word)))
            return L"the option " + *word + L" needs a value";
        ++word;
    }
    return Text();
}
