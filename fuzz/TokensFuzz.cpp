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
    const TString<wchar_t> delimiters = input.Text('\n');
    const TString<wchar_t> text = input.Text('\0');

    std::vector<TString<wchar_t>> tokens;
    text.GetTokens(delimiters, tokens, false);

    std::size_t place = 0;
    for (const TString<wchar_t>& token : tokens) {
        Require(token.find_first_of(delimiters) == std::wstring::npos);
        Require(text.compare(place, token.size(), token) == 0);
        place += token.size();
        Require(place == text.size() || delimiters.find(text[place]) != std::wstring::npos);
        ++place;
    }
    Require(place == text.size() + 1);

    std::vector<TString<wchar_t>> others;
    text.GetTokens(delimiters, others, true);
    std::erase_if(tokens, [](const TString<wchar_t>& token) { return token.empty(); });
    Require(others == tokens);
    return 0;
}
