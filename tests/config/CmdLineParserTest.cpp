#include "toolkit/config/CmdLineParser.h"

#include "support/OutOfMemory.h"

#include <gmock/gmock.h>

#include <array>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Tokens = std::vector<TString<wchar_t>>;

Tokens Tokenize(const TString<wchar_t>& line)
{
    Tokens tokens{L"old"};
    CmdLineParser::Tokenize(line, tokens);
    return tokens;
}

class CmdLineParserTest : public testing::Test {
protected:
    // Parses `arguments` with the options -v and -file, of which -file is required.
    bool Parse(std::vector<const wchar_t*> arguments)
    {
        CmdLineParser parser(static_cast<int>(arguments.size()), arguments.data());
        EXPECT_TRUE(parser.AddOption(m_v));
        EXPECT_TRUE(parser.AddOption(m_file));
        return parser.Parse();
    }

    smart_ptr<CmdLineOption> m_v = new CmdLineOption(L"v", false);
    smart_ptr<CmdLineOption> m_file = new CmdLineOption(L"file", true);
};

TEST_F(CmdLineParserTest, DefinesItsSpecialCharacters)
{
    EXPECT_EQ(CmdLineParser::c_strSeparators, L" \t");
    EXPECT_EQ(CmdLineParser::c_strIdentifiers, L"-");
    EXPECT_EQ(CmdLineParser::c_strDelimiters, L"\"");
}

TEST_F(CmdLineParserTest, SeparatesTokensOnlyAtSpacesAndTabs)
{
    const std::pair<const wchar_t*, Tokens> cases[] = {
        {L"", {}},
        {L" ", {}},
        {L" \t \t", {}},
        {L"a", {L"a"}},
        {L"  a  b\tc ", {L"a", L"b", L"c"}},
        {L"a\nb\rc\vd e\u00A0f", {L"a\nb\rc\vd", L"e\u00A0f"}}};
    for (const auto& [line, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(line));
        EXPECT_EQ(Tokenize(line), expected);
    }
}

TEST_F(CmdLineParserTest, EndsAQuotedTokenAtTheNextQuote)
{
    const std::pair<const wchar_t*, Tokens> cases[] = {
        {L"  a  \"b c\"   d", {L"a", L"b c", L"d"}},
        {L"\"\"", {L""}},
        {L"\"\" \"\"", {L"", L""}},
        {L"\"ab\"cd", {L"ab", L"cd"}},
        {L"\"ab\"\"cd\"", {L"ab", L"cd"}},
        {L"\"ab\"cd\"e f\"", {L"ab", L"cd\"e", L"f\""}},
        {L"\" \ta b \"", {L" \ta b "}},
        {L"\"a\\\"b", {L"a\\", L"b"}}};
    for (const auto& [line, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(line));
        EXPECT_EQ(Tokenize(line), expected);
    }
}

TEST_F(CmdLineParserTest, TreatsAQuoteInsideATokenAsAnOrdinaryCharacter)
{
    EXPECT_THAT(Tokenize(L"a\"b c\""), ElementsAre(L"a\"b", L"c\""));
    EXPECT_THAT(Tokenize(L"-name=\"a b\""), ElementsAre(L"-name=\"a", L"b\""));
}

TEST_F(CmdLineParserTest, DropsAQuotedTokenWithoutAClosingQuote)
{
    EXPECT_THAT(Tokenize(L"x \"y z"), ElementsAre(L"x"));
    EXPECT_THAT(Tokenize(L"x \""), ElementsAre(L"x"));
    EXPECT_THAT(Tokenize(L"\"x\"\"y z"), ElementsAre(L"x"));
}

TEST_F(CmdLineParserTest, TokenizesALineStoredInTheOutputVector)
{
    Tokens tokens{L"first", L"second \"a long line that has memory of its own\" third"};

    CmdLineParser::Tokenize(tokens[1], tokens);
    EXPECT_THAT(tokens,
                ElementsAre(L"second", L"a long line that has memory of its own", L"third"));
}

TEST_F(CmdLineParserTest, KeepsNullCharactersInTokens)
{
    EXPECT_THAT(Tokenize(std::wstring(L"a\0b c", 5)), ElementsAre(std::wstring(L"a\0b", 3), L"c"));
}

TEST_F(CmdLineParserTest, UsesTheTokenAfterAnOptionAsItsValue)
{
    EXPECT_TRUE(Parse({L"tool", L"-v", L"-file", L"x.txt"}));
    EXPECT_TRUE(m_v->IsDefined());
    EXPECT_EQ(m_v->GetValue(), L"");
    EXPECT_TRUE(m_file->IsDefined());
    EXPECT_EQ(m_file->GetValue(), L"x.txt");
}

TEST_F(CmdLineParserTest, FailsWithoutARequiredOption)
{
    EXPECT_FALSE(Parse({L"-v"}));
    EXPECT_TRUE(m_v->IsDefined());
    EXPECT_FALSE(m_file->IsDefined());
}

TEST_F(CmdLineParserTest, IgnoresTokensThatAreNeitherOptionsNorValues)
{
    EXPECT_TRUE(Parse({L"stray", L"-file", L"first", L"second", L"-v", L"yes", L"third"}));
    EXPECT_EQ(m_file->GetValue(), L"first");
    EXPECT_EQ(m_v->GetValue(), L"yes");
}

TEST_F(CmdLineParserTest, KeepsTheLastValueOfARepeatedOption)
{
    EXPECT_TRUE(Parse({L"-file", L"first", L"-file", L"second", L"-file"}));
    EXPECT_EQ(m_file->GetValue(), L"second");
}

TEST_F(CmdLineParserTest, IgnoresTheValueOfAnUnknownOption)
{
    EXPECT_TRUE(Parse({L"-file", L"-other", L"x.txt"}));
    EXPECT_TRUE(m_file->IsDefined());
    EXPECT_EQ(m_file->GetValue(), L"");
}

TEST_F(CmdLineParserTest, AcceptsAnEmptyTokenAsAValue)
{
    m_file->SetValue(L"old");

    EXPECT_TRUE(Parse({L"-file", L"", L"x.txt"}));
    EXPECT_EQ(m_file->GetValue(), L"");
}

TEST_F(CmdLineParserTest, ComparesNamesExactly)
{
    for (const wchar_t* const argument : {L"-V", L"--v", L"v", L"-v=1", L"-", L" -v", L"-v "}) {
        SCOPED_TRACE(testing::PrintToString(argument));
        Parse({argument});
        EXPECT_FALSE(m_v->IsDefined());
    }
}

TEST_F(CmdLineParserTest, RemovesExactlyOneDash)
{
    const smart_ptr<CmdLineOption> dashed(new CmdLineOption(L"-x", false));
    const smart_ptr<CmdLineOption> nameless(new CmdLineOption(L"", false));
    CmdLineParser parser(TString<wchar_t>(L"--x - value"));
    parser.AddOption(dashed);
    parser.AddOption(nameless);

    EXPECT_TRUE(parser.Parse());
    EXPECT_TRUE(dashed->IsDefined());
    EXPECT_EQ(nameless->GetValue(), L"value");
}

TEST_F(CmdLineParserTest, ConvertsRegisteredNamesToLowerCase)
{
    const smart_ptr<CmdLineOption> verbose(new CmdLineOption(L"Verbose", false));
    EXPECT_EQ(verbose->GetName(), L"verbose");
    for (const auto& [line, expected] :
         {std::pair(L"-Verbose", false), std::pair(L"-verbose", true)}) {
        CmdLineParser parser{TString<wchar_t>(line)};
        parser.AddOption(verbose);
        parser.Parse();
        EXPECT_EQ(verbose->IsDefined(), expected);
    }
}

TEST_F(CmdLineParserTest, TreatsANegativeNumberAsAnOption)
{
    const smart_ptr<CmdLineOption> five(new CmdLineOption(L"5", false));
    CmdLineParser parser(TString<wchar_t>(L"-file -5"));
    parser.AddOption(m_file);
    parser.AddOption(five);

    EXPECT_TRUE(parser.Parse());
    EXPECT_TRUE(five->IsDefined());
    EXPECT_EQ(m_file->GetValue(), L"");
}

TEST_F(CmdLineParserTest, TreatsADashInsideATokenAsAnOrdinaryCharacter)
{
    for (const wchar_t* const value : {L"a-b", L"x-v", L"trailing-", L" -v"}) {
        EXPECT_TRUE(Parse({L"-file", value}));
        EXPECT_EQ(m_file->GetValue(), value);
        EXPECT_FALSE(m_v->IsDefined());
    }
}

TEST_F(CmdLineParserTest, KeepsAnEqualsSignInTheName)
{
    const smart_ptr<CmdLineOption> literal(new CmdLineOption(L"file=x", false));
    CmdLineParser parser(TString<wchar_t>(L"-file=x"));
    parser.AddOption(m_file);
    parser.AddOption(literal);

    EXPECT_FALSE(parser.Parse());
    EXPECT_TRUE(literal->IsDefined());
    EXPECT_FALSE(m_file->IsDefined());
}

TEST_F(CmdLineParserTest, TakesAnOptionByValue)
{
    using AddOption = bool (CmdLineParser::*)(smart_ptr<CmdLineOption>);

    EXPECT_TRUE((std::is_same_v<decltype(&CmdLineParser::AddOption), AddOption>));
}

TEST_F(CmdLineParserTest, RejectsEmptyAndRepeatedOptions)
{
    CmdLineParser parser(TString<wchar_t>(L"-v"));

    EXPECT_FALSE(parser.AddOption(smart_ptr<CmdLineOption>()));
    EXPECT_TRUE(parser.AddOption(m_v));
    EXPECT_FALSE(parser.AddOption(m_v));
    EXPECT_FALSE(parser.AddOption(new CmdLineOption(L"V", true)));
    EXPECT_TRUE(parser.Parse());
    EXPECT_TRUE(m_v->IsDefined());
}

TEST_F(CmdLineParserTest, KeepsOptionValuesWhenParsingAgain)
{
    CmdLineParser parser(TString<wchar_t>(L"-v"));
    parser.AddOption(m_v);
    parser.AddOption(m_file);
    EXPECT_FALSE(parser.Parse());
    m_file->SetDefined();
    m_file->SetValue(L"kept");

    EXPECT_TRUE(parser.Parse());
    EXPECT_EQ(m_file->GetValue(), L"kept");
}

TEST_F(CmdLineParserTest, SetsAnOptionsValueWithoutDefiningIt)
{
    CmdLineOption option(L"Name", true);
    EXPECT_FALSE(option.IsDefined());
    EXPECT_TRUE(option.IsRequired());
    EXPECT_EQ(option.GetValue(), L"");

    option.SetValue(L"value");
    EXPECT_FALSE(option.IsDefined());
    option.SetDefined();
    EXPECT_TRUE(option.IsDefined());
    EXPECT_EQ(option.GetValue(), L"value");
}

TEST_F(CmdLineParserTest, StoresArgumentsUnchanged)
{
    EXPECT_TRUE(Parse({L"-file", L" \"a b\" "}));
    EXPECT_EQ(m_file->GetValue(), L" \"a b\" ");
}

TEST_F(CmdLineParserTest, DecodesNarrowArgumentsAsUtf8)
{
    std::array<const char*, 3> arguments = {"tool", "-file", "caf\xC3\xA9 \xF0\x9F\x98\x80"};
    CmdLineParser parser(3, arguments.data());
    parser.AddOption(m_file);

    EXPECT_TRUE(parser.Parse());
    EXPECT_EQ(m_file->GetValue(), L"caf\u00E9 \U0001F600");
}

TEST_F(CmdLineParserTest, TreatsAnArgumentWithInvalidUtf8AsEmpty)
{
    std::array<const char*, 2> arguments = {"-file", "caf\xE9"};
    m_file->SetValue(L"old");
    CmdLineParser parser(2, arguments.data());
    parser.AddOption(m_file);

    EXPECT_TRUE(parser.Parse());
    EXPECT_EQ(m_file->GetValue(), L"");
}

TEST_F(CmdLineParserTest, AcceptsTheArgumentsOfMain)
{
    char narrowOption[] = "-file";
    char narrowValue[] = "x";
    char* narrow[] = {narrowOption, narrowValue, nullptr};
    wchar_t wideOption[] = L"-v";
    wchar_t* wide[] = {wideOption, nullptr};
    CmdLineParser narrowParser(2, narrow);
    CmdLineParser wideParser(1, wide);
    narrowParser.AddOption(m_file);
    wideParser.AddOption(m_v);

    EXPECT_TRUE(narrowParser.Parse() && wideParser.Parse());
    EXPECT_EQ(m_file->GetValue(), L"x");
    EXPECT_TRUE(m_v->IsDefined());
}

TEST_F(CmdLineParserTest, SurvivesAWrongArgumentCount)
{
    const char* arguments[] = {"-v", nullptr, "-file"};
    CmdLineParser endsEarly(3, arguments);
    CmdLineParser negative(-1, arguments);
    CmdLineParser missing(3, static_cast<const char**>(nullptr));
    for (CmdLineParser* const parser : {&endsEarly, &negative, &missing})
        parser->AddOption(m_v);

    EXPECT_TRUE(negative.Parse() && missing.Parse());
    EXPECT_FALSE(m_v->IsDefined());
    EXPECT_TRUE(endsEarly.Parse());
    EXPECT_TRUE(m_v->IsDefined());
}

TEST_F(CmdLineParserTest, TokenizesACommandLine)
{
    CmdLineParser parser(TString<wchar_t>(L"tool -v  -file \"a b\" c"));
    parser.AddOption(m_v);
    parser.AddOption(m_file);

    EXPECT_TRUE(parser.Parse());
    EXPECT_TRUE(m_v->IsDefined());
    EXPECT_EQ(m_file->GetValue(), L"a b");
}

TEST_F(CmdLineParserTest, DecodesANarrowCommandLineAsUtf8)
{
    CmdLineParser parser(TString<char>("-file \"\xE6\x96\x87 \xE5\xAD\x97\""));
    parser.AddOption(m_file);

    EXPECT_TRUE(parser.Parse());
    EXPECT_EQ(m_file->GetValue(), L"\u6587 \u5B57");
}

// Parses a command line and a list of arguments while allocation number `allocation`, counted from
// 0, fails. Returns false if parsing makes fewer allocations.
bool ParseWithAFailingAllocation(const smart_ptr<CmdLineOption>& option, long allocation)
{
    const TString<wchar_t> line = L"-file \"a value that needs memory\"";
    std::array<const wchar_t*, 2> arguments = {L"-file", L"another value that needs memory"};
    option->SetValue(L"");

    const TestSupport::FailingAllocation failing(allocation);
    CmdLineParser lineParser(line);
    CmdLineParser argumentsParser(2, arguments.data());
    const bool isParsed = lineParser.AddOption(option) && lineParser.Parse() &&
                          argumentsParser.AddOption(option) && argumentsParser.Parse();
    EXPECT_TRUE(isParsed || failing.HasFailed());
    return failing.HasFailed();
}

TEST_F(CmdLineParserTest, ThrowsNothingWhenOutOfMemory)
{
    long allocation = 0;
    while (ParseWithAFailingAllocation(m_file, allocation))
        ++allocation;

    EXPECT_GT(allocation, 5);
    EXPECT_EQ(m_file->GetValue(), L"another value that needs memory");
}

TEST_F(CmdLineParserTest, ReturnsNoTokensWhenOutOfMemory)
{
    const TString<wchar_t> line = L"short \"a long token that needs memory of its own\"";
    Tokens tokens{L"old"};
    {
        const TestSupport::AllocationLimit limit(100);
        CmdLineParser::Tokenize(line, tokens);
    }
    EXPECT_THAT(tokens, IsEmpty());
}

} // namespace
} // namespace Toolkit
