// Replacing gives the same result as searching from the beginning after each replacement.

#include "toolkit/core/TString.h"

#include "references/Replace.h"
#include "support/Input.h"
#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace Toolkit;

// Whether `from` is not empty and shares no character with `to`. Replacing then terminates, because
// each step removes characters of `from`.
bool AreDisjoint(const std::wstring& from, const std::wstring& to)
{
    return !from.empty() && to.find_first_of(from) == std::wstring::npos;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t maxLength = 200;
    Input input(data, size < maxLength ? size : maxLength);
    const TString<wchar_t> from = input.ReadString('\n');
    const TString<wchar_t> to = input.ReadString('\n');
    TString<wchar_t> text = input.ReadString('\0');
    if (!References::ReplacingTerminates(from, to) && !AreDisjoint(from, to))
        return 0;

    std::wstring expected = text;
    References::ReplaceRepeatedly(expected, from, to);
    text.Replace(from, to);

    Require(text == expected);
    return 0;
}
