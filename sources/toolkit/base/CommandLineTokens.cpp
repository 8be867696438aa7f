#include "toolkit/base/CommandLineTokens.h"

#include "toolkit/config/CmdLineParser.h"

#include <algorithm>

namespace Toolkit {

std::vector<TString<wchar_t>> CommandLineTokens(const TString<wchar_t>& line)
{
    constexpr std::size_t none = std::wstring::npos;
    const TString<wchar_t>& separators = CmdLineParser::c_strSeparators;
    const wchar_t quote = CmdLineParser::c_strDelimiters.front();

    std::vector<TString<wchar_t>> tokens;
    std::size_t start = line.find_first_not_of(separators);
    while (start != none) {
        std::size_t end = 0;
        if (line[start] == quote) {
            const std::size_t closing = line.find(quote, start + 1);
            if (closing == none)
                break;
            tokens.emplace_back(line.substr(start + 1, closing - start - 1));
            end = closing + 1;
        } else {
            end = std::min(line.find_first_of(separators, start), line.size());
            tokens.emplace_back(line.substr(start, end - start));
        }
        start = line.find_first_not_of(separators, end);
    }
    return tokens;
}

} // namespace Toolkit
