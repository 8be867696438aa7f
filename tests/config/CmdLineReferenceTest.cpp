// Compares the tokens of random command lines with those of a plain character-by-character
// tokenizer.

#include "toolkit/config/CmdLineParser.h"

#include "support/RandomText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Toolkit {
namespace {

using TestSupport::RandomText;

// Tokenizes one line; each line needs a new object.
class ReferenceTokenizer {
public:
    std::vector<std::wstring> Tokenize(const std::wstring& line)
    {
        for (const wchar_t character : line)
            Consume(character);
        if (m_state == State::Unquoted)
            m_tokens.push_back(m_token);
        return m_tokens;
    }

private:
    enum class State { BetweenTokens, Unquoted, Quoted };

    void Consume(wchar_t character)
    {
        const bool isSeparator = character == L' ' || character == L'\t';
        switch (m_state) {
        case State::BetweenTokens:
            if (character == L'"')
                m_state = State::Quoted;
            else if (!isSeparator)
                BeginToken(character);
            break;
        case State::Unquoted:
            if (isSeparator)
                EndToken();
            else
                m_token.push_back(character);
            break;
        case State::Quoted:
            if (character == L'"')
                EndToken();
            else
                m_token.push_back(character);
            break;
        }
    }

    void BeginToken(wchar_t character)
    {
        m_state = State::Unquoted;
        m_token.push_back(character);
    }

    void EndToken()
    {
        m_tokens.push_back(m_token);
        m_token.clear();
        m_state = State::BetweenTokens;
    }

    State m_state = State::BetweenTokens;
    std::wstring m_token;
    std::vector<std::wstring> m_tokens;
};

TEST(CmdLineReferenceTest, TokenizesRandomLinesAsTheReferenceDoes)
{
    RandomText random(51);
    std::vector<TString<wchar_t>> tokens;
    for (int round = 0; round < 50000; ++round) {
        const std::wstring line = random.Text<wchar_t>(L"  \t\"\"ab-\\\u00E9\n", 24);
        CmdLineParser::Tokenize(line, tokens);
        const std::vector<std::wstring> actual(tokens.begin(), tokens.end());
        ASSERT_EQ(actual, ReferenceTokenizer().Tokenize(line)) << testing::PrintToString(line);
    }
}

} // namespace
} // namespace Toolkit
