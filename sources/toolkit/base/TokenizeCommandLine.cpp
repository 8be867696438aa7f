#include "toolkit/base/TokenizeCommandLine.h"

#include <algorithm>
#include <cstddef>

namespace Toolkit::Base {

std::vector<std::wstring_view> TokenizeCommandLine(std::wstring_view line,
                                                   std::wstring_view separators, wchar_t quote)
{
    constexpr std::size_t npos = std::wstring_view::npos;

    std::vector<std::wstring_view> tokens;
    std::size_t start = line.find_first_not_of(separators);
    while (start != npos) {
        std::size_t end = 0;
        if (line[start] == quote) {
            const std::size_t closing = line.find(quote, start + 1);
            if (closing == npos)
                break;
            tokens.push_back(line.substr(start + 1, closing - start - 1));
            end = closing + 1;
        } else {
            end = std::min(line.find_first_of(separators, start), line.size());
            tokens.push_back(line.substr(start, end - start));
        }
        start = line.find_first_not_of(separators, end);
    }
    return tokens;
}

} // namespace Toolkit::Base
