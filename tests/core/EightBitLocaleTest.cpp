// Compares the string operations with plain character-by-character ones in 8-bit locales, which are
// compiled from the system's locale sources.

#include "toolkit/core/TString.h"

#include "support/ScopedEnvironment.h"
#include "support/ScopedLocale.h"
#include "support/Soak.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <clocale>
#include <cstddef>
#include <cstdlib>
#include <cwctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace Toolkit {
namespace {

using TestSupport::Covered;
using TestSupport::ScopedEnvironment;
using TestSupport::ScopedLocale;
using TestSupport::SoakRounds;
using TestSupport::TempDir;

// Calls through these pointers are opaque: a compiler that knows tolower() by name may assume that
// an ASCII letter stays in ASCII.
int (*const volatile c_toLower)(int) = std::tolower;
std::wint_t (*const volatile c_wideToLower)(std::wint_t) = std::towlower;

const std::filesystem::path c_localeSources = "/usr/share/i18n";

bool IsMultibyte(const std::string& set)
{
    constexpr const char* prefixes[] = {"BIG5", "EUC", "GB", "UTF"};
    return std::any_of(std::begin(prefixes), std::end(prefixes),
                       [&set](const char* prefix) { return set.starts_with(prefix); });
}

// Returns all 8-bit character sets of the system, and a few multibyte ones, which Select() rejects.
// Testing them takes a few minutes.
std::set<std::string> ListAllCharacterSets()
{
    std::set<std::string> sets;
    for (const auto& file : std::filesystem::directory_iterator(c_localeSources / "charmaps")) {
        if (!IsMultibyte(file.path().stem()))
            sets.insert(file.path().stem());
    }
    return sets;
}

// Returns the 8-bit character sets of the locales that the system supports, and those with a
// dotless i. Under script/soak, returns ListAllCharacterSets().
std::set<std::string> ChooseCharacterSets()
{
    if (SoakRounds(0, 1) == 1)
        return ListAllCharacterSets();
    std::set<std::string> sets;
    for (const char* const turkish : {"CP1254", "IBM857", "IBM905", "IBM1026", "MACINTOSH"})
        sets.insert(turkish);
    std::ifstream supported(c_localeSources / "SUPPORTED");
    std::string name;
    for (std::string set; supported >> name >> set;) {
        if (!IsMultibyte(set))
            sets.insert(set);
    }
    return sets;
}

// Every glibc locale uses the letter table of one of these two.
constexpr const char* c_letterTables[] = {"i18n", "tr_TR"};

// Selects locales that consist only of a letter table. Compiling one takes a tenth of a second.
class LetterLocales {
public:
    // Compiles a locale from the letter table `letters` and the character set `set`, and makes it
    // the locale of the process. Returns false if that fails or `set` is multibyte.
    bool Select(const std::string& letters, const std::string& set)
    {
        const std::string source = (m_directory.Path() / letters).native();
        std::ofstream(source) << "LC_CTYPE\ncopy \"" << letters << "\"\nEND LC_CTYPE\n";
        const std::string name = letters + "." + set;
        const std::string command = "localedef --no-archive -c -i '" + source + "' -f " + set +
                                    " '" + (m_directory.Path() / name).native() +
                                    "' >/dev/null 2>&1";
        [[maybe_unused]] const int warnings = std::system(command.c_str());
        return std::setlocale(LC_CTYPE, name.c_str()) && MB_CUR_MAX == 1;
    }

private:
    TempDir m_directory;
    ScopedEnvironment m_searchPath{"LOCPATH", m_directory.Path().native()};
    ScopedLocale m_locale{"C"}; // restores the locale
};

// Long enough for the code paths that process many characters at once.
constexpr std::size_t c_longLength = 40;

char FoldForSearch(char character)
{
    return static_cast<char>(c_toLower(static_cast<signed char>(character)));
}

wchar_t FoldForSearch(wchar_t character)
{
    const auto number = static_cast<int>(character);
    return number < 0 || number > 255 ? character : static_cast<wchar_t>(c_toLower(number));
}

int FoldForComparison(char character)
{
    return c_toLower(static_cast<signed char>(character));
}

int FoldForComparison(wchar_t character)
{
    return static_cast<int>(c_wideToLower(static_cast<std::wint_t>(character)));
}

// The folded forms of the first `Count` characters.
template <typename Char, std::size_t Count>
struct FoldedCharacters {
    FoldedCharacters()
    {
        for (std::size_t i = 0; i < Count; ++i) {
            search[i] = FoldForSearch(static_cast<Char>(i));
            comparison[i] = FoldForComparison(static_cast<Char>(i));
        }
    }

    bool AreAlike(std::size_t i, std::size_t j) const
    {
        return search[i] == search[j] || comparison[i] == comparison[j];
    }

    std::array<Char, Count> search;
    std::array<int, Count> comparison;
};

// Checks character `i`, alone and within a long string, against character `j`.
template <typename Char, std::size_t Count>
void CheckPair(const FoldedCharacters<Char, Count>& folded, std::size_t i, std::size_t j)
{
    constexpr std::size_t middle = c_longLength / 2;
    TString<Char> text = std::basic_string<Char>(c_longLength, static_cast<Char>('!'));
    TString<Char> other = text;
    text[middle] = static_cast<Char>(i);
    other[middle] = static_cast<Char>(j);
    const TString<Char> needle(static_cast<Char>(j));
    const bool isSame = folded.search[i] == folded.search[j];
    const bool isInLong = isSame || folded.search['!'] == folded.search[j];
    const int a = folded.comparison[i];
    const int b = folded.comparison[j];

    EXPECT_EQ(text.HasSubstring(needle), isInLong) << i << " and " << j;
    EXPECT_EQ(TString<Char>(static_cast<Char>(i)).HasSubstring(needle), isSame)
        << i << " and " << j;
    EXPECT_EQ(text.compareNoCase(other), a == b ? 0 : a > b ? 1 : -1) << i << " and " << j;
}

// Checks all pairs that fold alike and an eighth of the others.
template <typename Char, std::size_t Count>
void CheckPairs()
{
    const FoldedCharacters<Char, Count> folded;
    for (std::size_t i = 1; i < Count; ++i) {
        for (std::size_t j = 1; j < Count; ++j) {
            if (folded.AreAlike(i, j) || (i + j) % 8 == 0)
                CheckPair(folded, i, j);
        }
    }
}

void CheckLowerCase()
{
    for (wchar_t character = 0; character < 0x180; ++character)
        EXPECT_EQ(TString<wchar_t>(character).ToLower(),
                  TString<wchar_t>(FoldForSearch(character)));
}

TEST(EightBitLocaleTest, AgreesWithCharacterByCharacterOperations)
{
    LetterLocales locales;
    int checked = 0;
    for (const std::string& set : ChooseCharacterSets()) {
        for (const char* const letters : c_letterTables) {
            SCOPED_TRACE(std::string(letters) + "." + set);
            if (!locales.Select(letters, set))
                continue;
            ++checked;
            CheckLowerCase();
            CheckPairs<char, 0x100>();
            CheckPairs<wchar_t, 0x140>();
            if (HasFailure())
                return;
        }
    }
    if (checked == 0)
        GTEST_SKIP() << "no 8-bit locale on this system";
    Covered(std::to_string(checked) + " 8-bit locales");
}

TEST(EightBitLocaleTest, DistinguishesDottedFromDotlessIInATurkishLocale)
{
    LetterLocales locales;
    if (!locales.Select("tr_TR", "ISO-8859-9"))
        GTEST_SKIP() << "no Turkish locale on this system";

    EXPECT_TRUE(TString<char>("I").HasSubstring("I"));
    EXPECT_FALSE(TString<char>("I").HasSubstring("i"));
    EXPECT_TRUE(TString<wchar_t>(L"I").HasSubstring(L"I"));
    EXPECT_EQ(TString<wchar_t>(L"I").ToLower(), L"\u00FD") << "0xFD is the dotless i";
}

} // namespace
} // namespace Toolkit
