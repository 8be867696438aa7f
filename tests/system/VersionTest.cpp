#include "toolkit/system/Version.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>

namespace Toolkit {
namespace {

using Parts = std::array<unsigned int, 4>;

Parts PartsOf(const Version& version)
{
    return {version.GetMajor(), version.GetMinor(), version.GetBuild(), version.GetRevision()};
}

Version FromParts(const Parts& parts)
{
    return {parts[0], parts[1], parts[2], parts[3]};
}

TEST(VersionTest, IsZeroByDefault)
{
    EXPECT_EQ(PartsOf(Version()), (Parts{0, 0, 0, 0}));
}

TEST(VersionTest, KeepsItsFourParts)
{
    EXPECT_EQ(PartsOf(Version(1, 2, 3, 4294967295)), (Parts{1, 2, 3, 4294967295}));
}

TEST(VersionTest, ReadsUpToFourNumbersFromAString)
{
    const std::pair<const wchar_t*, Parts> cases[] = {
        {L"2", {2, 0, 0, 0}},
        {L"1.2.3.4", {1, 2, 3, 4}},
        {L"1.2.3.4.5", {1, 2, 3, 4}},
        {L"10.0.332.3", {10, 0, 332, 3}},
        {L"4294967295.4294967296", {4294967295, 4294967295, 0, 0}},
        {L"007.01", {7, 1, 0, 0}},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(PartsOf(Version(text)), expected);
    }
}

TEST(VersionTest, AcceptsMalformedStrings)
{
    const std::pair<const wchar_t*, Parts> cases[] = {
        {L"", {0, 0, 0, 0}},       {L".", {0, 0, 0, 0}},        {L"1..2", {1, 2, 0, 0}},
        {L"..3.", {3, 0, 0, 0}},   {L"a.2.c.4", {0, 2, 0, 4}},  {L"1a.2b", {1, 2, 0, 0}},
        {L" 5 . 6", {5, 6, 0, 0}}, {L"\x0661.7", {0, 7, 0, 0}},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(PartsOf(Version(text)), expected);
    }
}

TEST(VersionTest, FormatsFourNumbersWithoutPadding)
{
    EXPECT_EQ(Version(10, 0, 332, 3).ToString(), L"10.0.332.3");
    EXPECT_EQ(Version().ToString(), L"0.0.0.0");
    EXPECT_EQ(Version(4294967295, 1, 0, 0).ToString(), L"4294967295.1.0.0");
}

TEST(VersionTest, IsOrderedByTheFirstPartThatDiffers)
{
    constexpr Parts ascending[] = {{0, 0, 0, 0}, {0, 0, 0, 1}, {0, 0, 1, 0},         {0, 1, 0, 0},
                                   {1, 0, 0, 0}, {1, 2, 3, 4}, {1, 2, 3, 5},         {1, 2, 4, 0},
                                   {1, 3, 0, 0}, {2, 0, 0, 0}, {4294967295, 0, 0, 0}};
    for (std::size_t one = 0; one < std::size(ascending); ++one) {
        for (std::size_t other = 0; other < std::size(ascending); ++other) {
            SCOPED_TRACE(testing::Message() << one << " and " << other);
            const Version left = FromParts(ascending[one]);
            const Version right = FromParts(ascending[other]);
            EXPECT_EQ(left < right, one < other);
            EXPECT_EQ(left > right, one > other);
            EXPECT_EQ(left == right, one == other);
        }
    }
}

TEST(VersionTest, ReturnsMinusOneZeroOrOneFromCompareVersion)
{
    const Version version(1, 2, 3, 4);

    EXPECT_EQ(version.CompareVersion(Version(1, 2, 4, 0)), -1);
    EXPECT_EQ(version.CompareVersion(Version(1, 2, 3, 4)), 0);
    EXPECT_EQ(version.CompareVersion(Version(1, 2, 3, 3)), 1);
}

TEST(VersionTest, ComparesAStringAsAVersion)
{
    const Version version(1, 2, 0, 0);

    EXPECT_EQ(version.CompareVersion(TString<wchar_t>(L"1.10")), -1);
    EXPECT_EQ(version.CompareVersion(TString<wchar_t>(L"1.2")), 0);
    EXPECT_EQ(version.CompareVersion(TString<wchar_t>(L"")), 1);
}

TEST(VersionTest, CreatesTheLibraryVersion)
{
    const std::unique_ptr<Version> version(Version::Create());

    EXPECT_EQ(version->ToString(), L"1.0.332.3");
}

TEST(VersionTest, HoldsTheLibraryVersionInTheProcessWideObject)
{
    Version::CreateInstance();

    EXPECT_EQ(Version::GetInstance()->ToString(), L"1.0.332.3");
    Version::ReleaseInstance();
}

TEST(VersionTest, KeepsTheProcessWideObjectWhenCreatedAgain)
{
    Version::CreateInstance();
    const Version* const first = Version::GetInstance().Get();

    Version::CreateInstance();

    EXPECT_EQ(Version::GetInstance().Get(), first);
    Version::ReleaseInstance();
}

TEST(VersionTest, KeepsAReferencedObjectAfterTheRelease)
{
    Version::CreateInstance();
    const smart_ptr<Version> copy = Version::GetInstance();

    Version::ReleaseInstance();

    EXPECT_EQ(Version::s_pInstance, nullptr);
    EXPECT_FALSE(Version::GetInstance().IsValid());
    EXPECT_EQ(copy->ToString(), L"1.0.332.3");
}

TEST(VersionTest, DoesNothingWhenReleasedWithoutAnObject)
{
    Version::ReleaseInstance();

    EXPECT_EQ(Version::s_pInstance, nullptr);
}

} // namespace
} // namespace Toolkit
