#include "toolkit/system/Locales.h"

#include "support/ScopedEnvironment.h"
#include "support/ScopedLocale.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

namespace Toolkit {
namespace {

using TestSupport::ScopedEnvironment;
using TestSupport::ScopedLocale;

class LocalesTest : public testing::Test {
protected:
    static std::wstring GetDateFormat()
    {
        TString<wchar_t> format = L"old";
        EXPECT_TRUE(Locales::GetCurrentDateFormat(format));
        return format;
    }

    const ScopedEnvironment m_all{"LC_ALL", std::nullopt};
    const ScopedEnvironment m_time{"LC_TIME", std::nullopt};
    const ScopedEnvironment m_language{"LANG", std::nullopt};
};

TEST_F(LocalesTest, SetsADotAsSeparatorAndReturnsFalse)
{
    const ScopedEnvironment german("LC_ALL", "de_DE.UTF-8");
    TString<wchar_t> separator = L"old";

    EXPECT_FALSE(Locales::GetDecimalSeparator(separator));
    EXPECT_EQ(separator, L".");
}

TEST_F(LocalesTest, OmitsNonAsciiPatterns)
{
    // Dzongkha writes words in its own script around the numbers of a time.
    const ScopedEnvironment dzongkha("LC_ALL", "dz_BT");

    EXPECT_EQ(GetDateFormat(), L"yyyy-MM-dd ");
}

TEST_F(LocalesTest, ReplacesQuotedTextInATimeWithOneSpace)
{
    const ScopedEnvironment quebec("LC_ALL", "fr_CA");

    EXPECT_EQ(GetDateFormat(), L"yyyy-MM-dd HH mm");
}

TEST_F(LocalesTest, UsesTheFirstNonEmptyEnvironmentVariable)
{
    const ScopedEnvironment language("LANG", "de_DE.UTF-8");
    EXPECT_EQ(GetDateFormat(), L"dd.MM.yy HH:mm");

    const ScopedEnvironment time("LC_TIME", "sv_SE.UTF-8");
    EXPECT_EQ(GetDateFormat(), L"yyyy-MM-dd HH:mm");

    const ScopedEnvironment empty("LC_ALL", "");
    EXPECT_EQ(GetDateFormat(), L"yyyy-MM-dd HH:mm");

    const ScopedEnvironment all("LC_ALL", "en_GB.UTF-8");
    EXPECT_EQ(GetDateFormat(), L"dd/MM/yyyy HH:mm");
}

TEST_F(LocalesTest, UsesTheRootFormatForInvalidLocaleNames)
{
    const std::string longWord(100000, 'a');
    const std::string cases[] = {"abcdefghi",
                                 "internationalised",
                                 longWord,
                                 "de_" + longWord,
                                 "de DE",
                                 "de/../../etc",
                                 "de_\xFF",
                                 "\xC3\xA9",
                                 "-",
                                 "_DE",
                                 std::string(101, '_')};
    for (const std::string& name : cases) {
        const ScopedEnvironment environment("LC_ALL", name);
        EXPECT_EQ(GetDateFormat(), L"yyyy-MM-dd HH:mm") << name.substr(0, 100);
    }
}

TEST_F(LocalesTest, UsesTheUsFormatWithoutALocale)
{
    EXPECT_EQ(GetDateFormat(), L"M/d/yy h:mm a");
    for (const char* const name : {"C", "POSIX", "C.UTF-8", ".UTF-8"}) {
        const ScopedEnvironment environment("LC_ALL", name);
        EXPECT_EQ(GetDateFormat(), L"M/d/yy h:mm a") << name;
    }
}

TEST_F(LocalesTest, IgnoresTheLocaleOfTheCLibrary)
{
    const ScopedLocale locale("C.UTF-8");
    const ScopedEnvironment environment("LC_ALL", "de_DE.UTF-8");

    EXPECT_EQ(GetDateFormat(), L"dd.MM.yy HH:mm");
}

} // namespace
} // namespace Toolkit
