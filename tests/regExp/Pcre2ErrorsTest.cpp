#include "toolkit/regExp/Pcre2Errors.Private.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <gtest/gtest.h>
#include <pcre2.h>

#include <utility>

namespace Toolkit {
namespace {

TEST(Pcre2ErrorsTest, MapsErrorsToTheNumbersOfPcre1)
{
    constexpr std::pair<int, int> cases[] = {
        {PCRE2_ERROR_NOMATCH, -1},       {PCRE2_ERROR_NULL, -2},
        {PCRE2_ERROR_BADOPTION, -3},     {PCRE2_ERROR_BADMAGIC, -4},
        {PCRE2_ERROR_NOMEMORY, -6},      {PCRE2_ERROR_MATCHLIMIT, -8},
        {PCRE2_ERROR_UTF8_ERR1, -10},    {PCRE2_ERROR_UTF8_ERR21, -10},
        {PCRE2_ERROR_BADUTFOFFSET, -11}, {PCRE2_ERROR_PARTIAL, -12},
        {PCRE2_ERROR_INTERNAL, -14},     {PCRE2_ERROR_DEPTHLIMIT, -21},
        {PCRE2_ERROR_HEAPLIMIT, -21},    {PCRE2_ERROR_BADOFFSET, -24},
        {PCRE2_ERROR_RECURSELOOP, -26},  {PCRE2_ERROR_BADMODE, -28}};
    for (const auto& [pcre2, pcre] : cases)
        EXPECT_EQ(ToPcreError(pcre2), pcre) << pcre2;
}

TEST(Pcre2ErrorsTest, MapsAnErrorWithoutACounterpartToTheInternalError)
{
    for (const int error : {PCRE2_ERROR_MIXEDTABLES, PCRE2_ERROR_BADSERIALIZEDDATA, -1000})
        EXPECT_EQ(ToPcreError(error), -14) << error;
}

TEST(Pcre2ErrorsTest, MapsUtf8ErrorsToTheFaultNumbersOfPcre1)
{
    EXPECT_EQ(ToUtf8Fault(PCRE2_ERROR_UTF8_ERR1), 1);
    EXPECT_EQ(ToUtf8Fault(PCRE2_ERROR_UTF8_ERR21), 21);
    EXPECT_FALSE(IsInvalidUtf8Error(PCRE2_ERROR_PARTIAL));
    EXPECT_FALSE(IsInvalidUtf8Error(PCRE2_ERROR_UTF16_ERR1));
}

TEST(Pcre2ErrorsTest, ReturnsTheSamePointerForTheSameError)
{
    const char* const message = GetCompileErrorMessage(PCRE2_ERROR_MISSING_SQUARE_BRACKET);

    EXPECT_STREQ(message, "missing terminating ] for character class");
    EXPECT_EQ(GetCompileErrorMessage(PCRE2_ERROR_MISSING_SQUARE_BRACKET), message);
    EXPECT_STREQ(GetCompileErrorMessage(100000), "unknown error");
    EXPECT_STREQ(GetCompileErrorMessage(-100000), "unknown error");
}

} // namespace
} // namespace Toolkit
