#include "toolkit/datetime/DateTime.h"
#include "toolkit/system/Locales.h"

#include "support/ScopedEnvironment.h"
#include "support/ScopedTimeZone.h"

#include <gtest/gtest.h>
#include <unicode/udat.h>
#include <unicode/uloc.h>
#include <unicode/uvernum.h>
#include <wx/datetime.h>

#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace Toolkit {
namespace {

using TestSupport::ScopedEnvironment;
using TestSupport::ScopedTimeZone;

// Returns the names of all ICU locales. Each works as the value of LC_ALL: the library cuts that
// value at the first dot or at sign, and these names contain neither.
std::vector<std::string> ListAvailableLocales()
{
    std::vector<std::string> locales;
    for (int32_t i = 0; i < uloc_countAvailable(); ++i)
        locales.emplace_back(uloc_getAvailable(i));
    return locales;
}

// Returns the installed ICU's pattern for `locale`; empty on failure. Either `time` or `date` is
// UDAT_NONE.
std::u16string GetIcuPattern(const std::string& locale, UDateFormatStyle time,
                             UDateFormatStyle date)
{
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UDateFormat, decltype(&udat_close)> format(
        udat_open(time, date, locale.c_str(), nullptr, 0, nullptr, 0, &error), &udat_close);
    char16_t buffer[512];
    const int32_t length = udat_toPattern(format.get(), false, buffer, std::size(buffer), &error);
    return U_SUCCESS(error) ? std::u16string(buffer, static_cast<std::size_t>(length))
                            : std::u16string();
}

bool HasLoneLetter(const std::u16string& pattern, char16_t letter)
{
    const std::size_t first = pattern.find(letter);
    return first != std::u16string::npos && pattern.find(letter, first + 1) == std::u16string::npos;
}

// Whether the library uses the pattern unchanged, apart from the spaces that it removes from a date
// pattern. It removes or replaces quoted text, eras (G) and periods of the day (B).
bool IsPlain(const std::u16string& pattern)
{
    for (const char16_t character : pattern) {
        if (character > 0x7F)
            return false;
    }
    return !HasLoneLetter(pattern, u'y') && !HasLoneLetter(pattern, u'H') &&
           pattern.find_first_of(u"'GB") == std::u16string::npos;
}

std::wstring GetDateFormat()
{
    TString<wchar_t> format;
    EXPECT_TRUE(Locales::GetCurrentDateFormat(format));
    return format;
}

TEST(LocalesIcuTest, ReturnsPlainIcuPatternsUnchanged)
{
    int plainLocales = 0;
    for (const std::string& locale : ListAvailableLocales()) {
        const std::u16string date = GetIcuPattern(locale, UDAT_NONE, UDAT_SHORT);
        const std::u16string time = GetIcuPattern(locale, UDAT_SHORT, UDAT_NONE);
        if (!IsPlain(date) || !IsPlain(time) || date.find(u' ') != std::u16string::npos)
            continue;
        ++plainLocales;
        const ScopedEnvironment environment("LC_ALL", locale);
        EXPECT_EQ(GetDateFormat(), std::wstring(date.begin(), date.end()) + L" " +
                                       std::wstring(time.begin(), time.end()))
            << locale;
    }
    EXPECT_GT(plainLocales, 50) << "the loop has compared hardly any locale";
}

TEST(LocalesIcuTest, LeavesNoQuotesOrDoubleSpaces)
{
    for (const std::string& locale : ListAvailableLocales()) {
        const ScopedEnvironment environment("LC_ALL", locale);
        const std::wstring format = GetDateFormat();
        EXPECT_EQ(format.find(L"  "), std::wstring::npos) << locale;
        EXPECT_EQ(format.find(L'\''), std::wstring::npos) << locale;
    }
}

// Returns `text` without the AM and PM strings of wxWidgets.
std::wstring RemoveAmPm(TString<wchar_t> text)
{
    wxString am;
    wxString pm;
    wxDateTime::GetAmPmStrings(&am, &pm);
    for (const wxString& period : {am, pm}) {
        if (!period.empty())
            text.Replace(period.ToStdWstring(), L"");
    }
    return text;
}

TEST(LocalesIcuTest, LeavesNoPatternLettersInAFormattedDate)
{
    const ScopedTimeZone zone("UTC");
    for (const std::string& locale : ListAvailableLocales()) {
        const ScopedEnvironment environment("LC_ALL", locale);
        for (const unsigned int hour : {7u, 17u}) {
            TString<wchar_t> text;
            DateTime(2009, 3, 5, hour, 4, 9).GetString(text);
            for (const wchar_t character : RemoveAmPm(text))
                EXPECT_FALSE(std::iswalpha(static_cast<std::wint_t>(character)))
                    << locale << ": " << testing::PrintToString(text);
        }
    }
}

TEST(LocalesIcuTest, NamesIcuAndItsVersionAsTheProvider)
{
    EXPECT_EQ(Locales::GetProviderVersion(), L"ICU " U_ICU_VERSION);
}

} // namespace
} // namespace Toolkit
