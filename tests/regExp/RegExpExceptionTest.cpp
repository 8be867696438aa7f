#include "toolkit/regExp/RegExp.Exceptions.h"
#include "toolkit/regExp/RegExp.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "regExp/CaughtException.h"
#include "regExp/Engine.h"

namespace Toolkit {
namespace {

using TestSupport::CaughtException;
using TestSupport::CaughtMessage;

// Returns the message for a pattern that does not compile.
TString<char> GetCompileMessage(const char* pattern)
{
    return CaughtMessage([&] { RegExp(pattern, RegExpOptions::None).IsMatch("subject"); });
}

TEST(RegExpExceptionTest, IsEmptyAfterConstruction)
{
    const RegExpException exception;

    EXPECT_EQ(exception.message, "");
    EXPECT_EQ(exception.file, "");
    EXPECT_EQ(exception.line, "");
    EXPECT_EQ(exception.function, "");
}

TEST(RegExpExceptionTest, IsAStandardException)
{
    EXPECT_TRUE((std::is_base_of_v<std::exception, RegExpException>));
    EXPECT_TRUE(std::has_virtual_destructor_v<RegExpException>);
}

TEST(RegExpExceptionTest, ReportsAFixedLocation)
{
    const auto exception = CaughtException([] { RegExpException::Throw(L"message"); });

    ASSERT_TRUE(exception.IsValid());
    EXPECT_EQ(exception->file, "sources/toolkit/regExp/RegExp.Exceptions.h");
    EXPECT_EQ(exception->line, "\x07");
    EXPECT_EQ(exception->function, "Throw");
}

TEST(RegExpExceptionTest, ConvertsItsMessageToUtf8)
{
    EXPECT_EQ(CaughtMessage([] { RegExpException::Throw(L"\u00E9t\u00E9"); }), "\xC3\xA9t\xC3\xA9");
}

TEST(RegExpExceptionTest, IsThrownAsASmartPointer)
{
    EXPECT_THROW(
        try { RegExpException::Throw(L"message"); } catch (const std::exception&){},
        smart_ptr<RegExpException>);
}

TEST(RegExpExceptionTest, OverwritesThePrefixWithALongCompileMessage)
{
    EXPECT_EQ(GetCompileMessage("abc["),
              " : missing terminating ] for character class (@offset: 4) abc[");
    EXPECT_EQ(
        GetCompileMessage("a**b{2}+*"),
        TestSupport::SelectForEngine(" : nothing to repeat (@offset: 2) a**b{2}+*",
                                     " : quantifier does not follow a repeatable item (@offset: 2) "
                                     "a**b{2}+*"));
}

TEST(RegExpExceptionTest, KeepsTheRestOfThePrefixAfterAShortCompileMessage)
{
    if (TestSupport::c_usesPcre2)
        GTEST_SKIP() << "PCRE 2 has no message that is short enough";
    constexpr std::pair<const char*, const char*> cases[] = {
        {"(", " : missing ) (@offset: 1) (ror "},
        {"a(", " : missing ) (@offset: 2) a(or "},
        {"abc(", " : missing ) (@offset: 4) abc( "},
        {"abcde(", " : missing ) (@offset: 6) abcde("},
        {"abcdef(", " : missing ) (@offset: 7) abcdef("}};
    for (const auto& [pattern, expected] : cases)
        EXPECT_EQ(GetCompileMessage(pattern), expected);
}

TEST(RegExpExceptionTest, IncludesThePatternAsUtf8InACompileMessage)
{
    EXPECT_EQ(GetCompileMessage("\xC3\xA9["),
              " : missing terminating ] for character class (@offset: 3) \xC3\xA9[");
}

TEST(RegExpExceptionTest, OmitsAPatternThatIsNotUtf8FromTheMessage)
{
    EXPECT_EQ(
        GetCompileMessage("a\xFF"),
        TestSupport::SelectForEngine(" : invalid UTF-8 string (@offset: 1) ",
                                     " : UTF-8 error: illegal byte (0xfe or 0xff) (@offset: 1) "));
}

TEST(RegExpExceptionTest, WritesAnOffsetWithoutThousandsSeparators)
{
    const std::string pattern = std::string(12345, 'a') + "[";

    EXPECT_EQ(GetCompileMessage(pattern.c_str()),
              " : missing terminating ] for character class (@offset: 12346) " + pattern);
}

TEST(RegExpExceptionTest, IsThrownByEveryOperationForAnInvalidPattern)
{
    RegExp regExp("a[", RegExpOptions::None);
    RegExp::ReplacementMappedStrings map;
    const std::vector<TString<char>> list;
    const TString<char> expected = " : missing terminating ] for character class (@offset: 2) a[";

    EXPECT_EQ(CaughtMessage([&] { regExp.IsMatch("a"); }), expected);
    EXPECT_EQ(CaughtMessage([&] { regExp.IsMatch(L"a"); }), expected);
    EXPECT_EQ(CaughtMessage([&] { regExp.Match("a"); }), expected);
    EXPECT_EQ(CaughtMessage([&] { regExp.Match(L"a"); }), expected);
    EXPECT_EQ(CaughtMessage([&] { regExp.Replace("x", "a", 0); }), expected);
    EXPECT_EQ(CaughtMessage([&] { regExp.Replace(list, "a"); }), expected);
    EXPECT_EQ(CaughtMessage([&] { regExp.Replace(map, "a"); }), expected);
}

TEST(RegExpExceptionTest, OverwritesTheStartOfASearchMessageWithTheErrorCode)
{
    const RegExp regExp("a", RegExpOptions::None);
    const smart_ptr<MatchResult> neverCompiled(new MatchResult());

    EXPECT_EQ(CaughtMessage([&] { regExp.RegExp_exec(neverCompiled, 0); }),
              "-2gExp::Match return error: ");
    EXPECT_EQ(CaughtMessage([&] { regExp.IsMatch("\xFF"); }), "-10Exp::Match return error: ");
    EXPECT_EQ(CaughtMessage([&] { regExp.IsMatch("\xC3"); }), "-10Exp::Match return error: ");
}

TEST(RegExpExceptionTest, LeavesThePatternUsable)
{
    const RegExp regExp("a", RegExpOptions::None);

    EXPECT_EQ(CaughtMessage([&] { regExp.Match("a\xFF"); }), "-10Exp::Match return error: ");
    EXPECT_TRUE(regExp.IsMatch("a"));
}

TEST(RegExpExceptionTest, StaysAliveWhileAPointerRefersToIt)
{
    smart_ptr<RegExpException> copy;
    {
        const auto exception = CaughtException([] { RegExpException::Throw(L"kept"); });
        copy = exception;
    }

    EXPECT_EQ(copy->message, "kept");
}

} // namespace
} // namespace Toolkit
