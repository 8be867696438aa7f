// The tokens and the delimiters between them add up to the string; skipping empty tokens changes
// nothing else.

#include "toolkit/core/TString.h"

#include "support/Input.h"
#include "support/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const TString<wchar_t> delimiters = input.ReadString('\n');
    const TString<wchar_t> text = input.ReadString('\0');

    std::vector<TString<wchar_t>> tokens;
    text.GetTokens(delimiters, tokens, false);

    std::size_t offset = 0;
    for (const TString<wchar_t>& token : tokens) {
        Require(token.find_first_of(delimiters) == std::wstring::npos);
        Require(text.compare(offset, token.size(), token) == 0);
        offset += token.size();
        Require(offset == text.size() || delimiters.find(text[offset]) != std::wstring::npos);
        ++offset;
    }
    Require(offset == text.size() + 1);

    std::vector<TString<wchar_t>> nonEmptyTokens;
    text.GetTokens(delimiters, nonEmptyTokens, true);
    std::erase_if(tokens, [](const TString<wchar_t>& token) { return token.empty(); });
    Require(nonEmptyTokens == tokens);
    return 0;
}
