#include "toolkit/system/LocalePatterns.Private.h"

#include <unicode/udat.h>

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <iterator>
#include <memory>
#include <string>

// ICU's headers append its version to every function name. TOOLKIT_SYMBOL_OF() expands to such a
// name as a string literal.
#define TOOLKIT_TEXT_OF(name) #name
#define TOOLKIT_SYMBOL_OF(function) TOOLKIT_TEXT_OF(function)

namespace Toolkit {

const wchar_t* const c_localeProvider = L"ICU " U_ICU_VERSION;

namespace {

// The ICU functions needed below. Loading ICU takes a sixth of the start-up time of a whole
// program, so only the first request for a pattern loads it. It is never unloaded.
struct Icu {
    template <typename Function>
    void Find(Function*& function, const char* symbol) const
    {
        function = library ? reinterpret_cast<Function*>(::dlsym(library, symbol)) : nullptr;
    }

    Icu() : library(::dlopen("libicui18n.so." U_ICU_VERSION_SHORT, RTLD_NOW | RTLD_NODELETE))
    {
        Find(open, TOOLKIT_SYMBOL_OF(udat_open));
        Find(toPattern, TOOLKIT_SYMBOL_OF(udat_toPattern));
        Find(close, TOOLKIT_SYMBOL_OF(udat_close));
    }

    bool IsLoaded() const { return open && toPattern && close; }

    void* library;
    decltype(&udat_open) open;
    decltype(&udat_toPattern) toPattern;
    decltype(&udat_close) close;
};

bool IsAsciiLetterOrDigit(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

// Whether ICU can handle `name`: ICU crashes on a long first subtag, and replaces an empty one with
// its own default.
bool IsLocaleName(const std::string& name)
{
    constexpr std::size_t maxNameLength = 100; // less than ICU's ULOC_FULLNAME_CAPACITY
    constexpr std::size_t maxSubtagLength = 8; // RFC 5646, section 2.1

    std::size_t subtagLength = 0;
    for (const char character : name) {
        const bool isSeparator = character == '_' || character == '-';
        subtagLength = isSeparator ? 0 : subtagLength + 1;
        if (subtagLength > maxSubtagLength || (!isSeparator && !IsAsciiLetterOrDigit(character)))
            return false;
    }
    return name.size() <= maxNameLength && name.front() != '_' && name.front() != '-';
}

// Returns the locale that the environment names, in ICU's notation: "de_AT" for "de_AT.UTF-8@euro".
// Returns "en_US_POSIX" if it names none, "C" or "POSIX", and the root locale for a name that no
// locale can have. ICU's own default would ignore LC_TIME and treat an empty LC_ALL as a name.
std::string GetUserLocale()
{
    for (const char* const name : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* const value = std::getenv(name);
        if (!value || !*value)
            continue;
        std::string locale(value);
        locale.erase(std::min(locale.find_first_of(".@"), locale.size()));
        if (locale != "C" && locale != "POSIX" && !locale.empty())
            return IsLocaleName(locale) ? locale : "root";
        break;
    }
    return "en_US_POSIX";
}

std::u16string ReadPattern(UDateFormatStyle time, UDateFormatStyle date)
{
    static const Icu icu;
    // Without ICU, the patterns are those of the United States.
    if (!icu.IsLoaded())
        return date == UDAT_SHORT ? u"M/d/yy" : u"h:mm a";
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UDateFormat, decltype(icu.close)> format(
        icu.open(time, date, GetUserLocale().c_str(), nullptr, 0, nullptr, 0, &error), icu.close);
    if (U_FAILURE(error))
        return {};
    char16_t buffer[512];
    const int32_t length = icu.toPattern(format.get(), false, buffer, std::size(buffer), &error);
    if (U_FAILURE(error) || length > static_cast<int32_t>(std::size(buffer)))
        return {};
    return {buffer, static_cast<std::size_t>(length)};
}

// Replaces no-break spaces with spaces, and removes direction marks: newer locale data contains
// both.
TString<wchar_t> NormalizeCharacters(const std::u16string& pattern)
{
    TString<wchar_t> text;
    for (const char16_t character : pattern) {
        if (character == u'\u202F' || character == u'\u00A0')
            text.push_back(L' ');
        else if (character != u'\u200E' && character != u'\u200F')
            text.push_back(static_cast<wchar_t>(character));
    }
    return text;
}

TString<wchar_t> RemoveQuotedText(const TString<wchar_t>& pattern)
{
    TString<wchar_t> text;
    bool isQuoted = false;
    for (const wchar_t character : pattern) {
        if (character == L'\'')
            isQuoted = !isQuoted;
        else if (!isQuoted)
            text.push_back(character);
    }
    return text;
}

// Replaces a letter that occurs only once with `width` such letters. A lone letter means a number
// without leading zeros, for which the library has no token.
TString<wchar_t> RepeatSingleLetter(TString<wchar_t> pattern, wchar_t letter, std::size_t width)
{
    const std::size_t first = pattern.find(letter);
    if (first != std::wstring::npos && pattern.find(letter, first + 1) == std::wstring::npos)
        pattern.replace(first, 1, width, letter);
    return pattern;
}

TString<wchar_t> RemoveLetter(TString<wchar_t> pattern, wchar_t letter)
{
    pattern.erase(std::remove(pattern.begin(), pattern.end(), letter), pattern.end());
    return pattern;
}

// Replaces "B", a period of the day such as "in the evening", with "a", which is AM or PM.
TString<wchar_t> ReplacePeriodsOfDay(TString<wchar_t> pattern)
{
    std::replace(pattern.begin(), pattern.end(), L'B', L'a');
    return pattern;
}

// Merges two adjacent spaces into one: RemoveQuotedText() may leave such a pair.
TString<wchar_t> MergeSpaces(TString<wchar_t> pattern)
{
    pattern.Replace(L"  ", L" ");
    return pattern;
}

} // namespace

TString<wchar_t> ReadShortDatePattern()
{
    const TString<wchar_t> pattern =
        RemoveQuotedText(NormalizeCharacters(ReadPattern(UDAT_NONE, UDAT_SHORT)));
    const TString<wchar_t> withoutEra = RemoveLetter(pattern, L'G');
    return RepeatSingleLetter(RemoveLetter(withoutEra, L' '), L'y', 4);
}

TString<wchar_t> ReadShortTimePattern()
{
    const TString<wchar_t> pattern =
        RemoveQuotedText(NormalizeCharacters(ReadPattern(UDAT_SHORT, UDAT_NONE)));
    return RepeatSingleLetter(ReplacePeriodsOfDay(MergeSpaces(pattern)), L'H', 2);
}

} // namespace Toolkit
