#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "ToolFixture.h"

namespace Toolkit::TestSupport {
namespace {

using testing::ContainsRegex;

using AboutCommandTest = ToolFixture;

TEST_F(AboutCommandTest, PrintsTheVersions)
{
    const ProgramResult result = Run({"about"});

    EXPECT_EQ(result.exitCode, 0);
    // `[^\n]` matches PCRE's minor version and date, the compiler, and any sanitizers.
    EXPECT_THAT(result.output,
                ContainsRegex("^Toolkit 1.0.332.3\nwxWidgets 3[.][0-9.]+\nPCRE2? [0-9]+[.][^\n]+\n"
                              "ICU [0-9.]+\n[^\n]+, [A-Za-z]+ build(, hardened)?, (shared|static) "
                              "library, regular expressions by pcre2?[^\n]*\n$"));
}

TEST_F(AboutCommandTest, ChecksTheLibraryWithinTenSeconds)
{
    const auto begin = std::chrono::steady_clock::now();

    const ProgramResult result = Run({"about", "--check"});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "good text\ngood regular expressions\ngood dates\ngood files\n"
                             "good settings\ngood threads\ngood log\n");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

} // namespace
} // namespace Toolkit::TestSupport
