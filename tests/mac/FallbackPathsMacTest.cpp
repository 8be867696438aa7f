#include "toolkit/files/FallbackPaths.Private.h"

#include "support/ScopedEnvironment.h"

#include <gtest/gtest.h>

#include "mac/SystemStandIns.h"

namespace Toolkit {
namespace {

TEST(FallbackPathsMacTest, FindsDataAndResourcesInTheBundle)
{
    const TString<wchar_t> executable = L"/Applications/Tool.app/Contents/MacOS/Tool";

    EXPECT_EQ(FindFallbackDataDirectory(executable, L"Tool"),
              L"/Applications/Tool.app/Contents/SharedSupport");
    EXPECT_EQ(FindFallbackResourcesDirectory(executable, L"Tool"),
              L"/Applications/Tool.app/Contents/Resources");
}

TEST(FallbackPathsMacTest, UsesTheWorkingDirectoryOutsideABundle)
{
    const TString<wchar_t> executable = L"/usr/local/bin/tool";

    EXPECT_EQ(FindFallbackDataDirectory(executable, L"tool"), L"./SharedSupport");
    EXPECT_EQ(FindFallbackResourcesDirectory(executable, L"tool"), L"./Resources");
}

TEST(FallbackPathsMacTest, FindsTheUsersDirectoriesInTheHomeDirectory)
{
    const TestSupport::ScopedEnvironment home("HOME", "/Users/ann");

    EXPECT_EQ(FindFallbackUserLocalDataDirectory(L"Tool"),
              L"/Users/ann/Library/Application Support/Tool");
    EXPECT_EQ(FindFallbackUserLocalDataDirectory(L""), L"/Users/ann/Library/Application Support");
    EXPECT_EQ(FindFallbackDocumentsDirectory(), L"/Users/ann/Documents");
}

} // namespace
} // namespace Toolkit
