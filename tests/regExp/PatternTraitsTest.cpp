#include "toolkit/regExp/PatternTraits.Private.h"

#include <gtest/gtest.h>

namespace Toolkit {
namespace {

TEST(PatternTraitsTest, IgnoresPrecedingTextWithoutStartAnchorsOrLookBehind)
{
    for (const char* pattern :
         {"",        "a",      "a|b",      "[^a]",       "a$",          "\\d+\\.\\d*",
          "(a)\\1",  "(?:a)",  "(?=a)",    "(?!a)",      "(?<name>a)",  "(?P<name>a)",
          "(?i)a",   "(?>a+)", "\\^",      "\\(*",       "\\\\",        "\\x{E9}",
          "\\p{Lu}", "\\z",    "\xC3\xA9", "\\\xC3\xA9", "(?|(a)|(b))", "(a)(?1)"}) {
        SCOPED_TRACE(pattern);
        EXPECT_TRUE(IgnoresPrecedingText(pattern));
    }
}

// Includes patterns that only seem to examine the preceding text: the scan does not parse them
// completely.
TEST(PatternTraitsTest, ReportsThatOtherPatternsMayExaminePrecedingText)
{
    for (const char* pattern :
         {"^a",      "a|^b",    "(^a)",      "(?m)^",      "\\[^a",    "\\c[^a",   "\\ba",
          "a\\B",    "\\Aa",    "\\Ga",      "a\\K",       "\\Ca",     "\\Q[\\E^", "[\\E^a]",
          "(?<=a)b", "(?<!a)b", "(?<*a)b",   "(?(?<=a)b)", "(*SKIP)a", "(*CRLF)a", "(?C)a",
          "\\X",     "[\\\\]^", "(?#\\)\\b", "a\\",        "[[:<:]]a", "a[[:>:]]"}) {
        SCOPED_TRACE(pattern);
        EXPECT_FALSE(IgnoresPrecedingText(pattern));
    }
}

TEST(PatternTraitsTest, MatchesWholeCharactersWithoutBackslashC)
{
    EXPECT_TRUE(MatchesWholeCharacters("(?s).\\c\\d"));
    EXPECT_FALSE(MatchesWholeCharacters("a\\C"));
}

} // namespace
} // namespace Toolkit
