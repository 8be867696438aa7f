#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace Toolkit::TestSupport {
namespace {

namespace fs = std::filesystem;

// The words of "ReturnsFalseForADirectory".
std::vector<std::string> WordsOf(const std::string& name)
{
    static const std::regex word("[A-Z][a-z0-9]*");
    return {std::sregex_token_iterator(name.begin(), name.end(), word),
            std::sregex_token_iterator()};
}

// A name promises what the class does, so it starts with a verb that has "the class" as its
// subject: "Returns", "Cannot", "Only". A plural noun ends in an s too; the word
// after it gives it away.
bool IsPromise(const std::string& name)
{
    static const std::set<std::string> helpers = {"Can", "Cannot", "May", "Never", "Only"};
    static const std::set<std::string> wordsAfterPlurals = {
        "Are", "Become", "Can", "Cannot", "Go", "Have", "Keep", "May", "Stay", "Take"};
    const std::vector<std::string> words = WordsOf(name);
    if (words.empty() || !words[0].ends_with('s'))
        return !words.empty() && helpers.count(words[0]) > 0;
    return words.size() == 1 || wordsAfterPlurals.count(words[1]) == 0;
}

// "Suite.Name" of each test of the sources below this one.
std::vector<std::string> AllTests()
{
    static const std::regex test(R"(\n(?:TYPED_)?TEST(?:_[FP])?\(\s*(\w+),\s*(\w+)\))");
    std::vector<std::string> tests;
    for (const auto& file : fs::recursive_directory_iterator(TOOLKIT_SOURCE_DIR "/tests")) {
        if (file.path().extension() != ".cpp")
            continue;
        const std::string text = ReadWholeFile(file.path());
        for (std::sregex_iterator found(text.begin(), text.end(), test), end; found != end; ++found)
            tests.push_back((*found)[1].str() + "." + (*found)[2].str());
    }
    return tests;
}

TEST(TestNamesTest, StartsNamesWithAVerb)
{
    const std::vector<std::string> tests = AllTests();
    EXPECT_THAT(tests, testing::Contains("TestNamesTest.StartsNamesWithAVerb"));

    for (const std::string& test : tests)
        EXPECT_TRUE(IsPromise(test.substr(test.find('.') + 1))) << test;
}

} // namespace
} // namespace Toolkit::TestSupport
