// Tokens that are joined into a command line are split into the same tokens again, and a plain
// search of the tokens finds the same options.

#include "toolkit/config/CmdLineParser.h"

#include "support/Input.h"
#include "support/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace Toolkit;
using Tokens = std::vector<TString<wchar_t>>;

// Joins `tokens` into a command line. Quotes all but those that contain a quote; these contain no
// separator.
TString<wchar_t> Join(const Tokens& tokens)
{
    TString<wchar_t> line;
    for (const TString<wchar_t>& token : tokens) {
        if (token.find(L'"') == std::wstring::npos)
            line += L" \"" + token + L"\"";
        else
            line += L"\t" + token;
    }
    return line;
}

bool IsOption(const TString<wchar_t>& token)
{
    return !token.empty() && token.front() == L'-';
}

// Returns the value of the last "-name" that has one.
TString<wchar_t> FindValue(const Tokens& tokens, const TString<wchar_t>& name)
{
    TString<wchar_t> value;
    for (std::size_t i = 1; i < tokens.size(); ++i) {
        if (tokens[i - 1] == L"-" + name && !IsOption(tokens[i]))
            value = tokens[i];
    }
    return value;
}

void CheckParse(CmdLineParser& parser, const Tokens& tokens)
{
    const smart_ptr<CmdLineOption> optional(new CmdLineOption(L"A", false));
    const smart_ptr<CmdLineOption> required(new CmdLineOption(L"b", true));
    Require(parser.AddOption(optional) && parser.AddOption(required));
    // Names are converted to lower case, so "a" is a duplicate.
    Require(!parser.AddOption(new CmdLineOption(L"a", true)));
    const auto isGiven = [&tokens](const wchar_t* option) {
        return std::find(tokens.begin(), tokens.end(), option) != tokens.end();
    };

    Require(parser.Parse() == isGiven(L"-b"));
    Require(optional->IsDefined() == isGiven(L"-a"));
    Require(optional->GetValue() == FindValue(tokens, L"a"));
    Require(required->GetValue() == FindValue(tokens, L"b"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const TString<char> bytes = Input(data, size).ReadRest();
    CmdLineParser(bytes).Parse();

    const TString<wchar_t> line = std::wstring(data, data + size);
    Tokens tokens;
    CmdLineParser::Tokenize(line, tokens);
    Tokens reparsed;
    CmdLineParser::Tokenize(Join(tokens), reparsed);
    Require(reparsed == tokens);

    CmdLineParser parser(line);
    CheckParse(parser, tokens);
    return 0;
}
