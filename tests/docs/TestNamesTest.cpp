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

// Splits a name such as "ReturnsFalseForADirectory" into words.
std::vector<std::string> WordsOf(const std::string& name)
{
    static const std::regex word("[A-Z][a-z0-9]*");
    return {std::sregex_token_iterator(name.begin(), name.end(), word),
            std::sregex_token_iterator()};
}

// First words of test names: verbs whose subject is the tested class.
const std::set<std::string> c_verbs = {
    "Accepts",    "Adds",     "Agrees",      "Allocates",     "Appends",   "Applies",
    "Assumes",    "Blocks",   "Bounds",      "Breaks",        "Calls",     "Can",
    "Cancels",    "Cannot",   "Catches",     "Chains",        "Changes",   "Checks",
    "Clamps",     "Closes",   "Collects",    "Compares",      "Compiles",  "Completes",
    "Composes",   "Computes", "Connects",    "Constructs",    "Consumes",  "Contains",
    "Continues",  "Converts", "Copies",      "Counts",        "Creates",   "Cuts",
    "Decodes",    "Defines",  "Deletes",     "Delivers",      "Describes", "Deserializes",
    "Destroys",   "Differs",  "Disconnects", "Distinguishes", "Does",      "Drops",
    "Empties",    "Encodes",  "Ends",        "Escapes",       "Evaluates", "Exists",
    "Exits",      "Exports",  "Extracts",    "Fails",         "Fills",     "Filters",
    "Finds",      "Flushes",  "Folds",       "Follows",       "Forgets",   "Formats",
    "Forwards",   "Frees",    "Gets",        "Gives",         "Has",       "Holds",
    "Honours",    "Ignores",  "Includes",    "Initializes",   "Inserts",   "Installs",
    "Is",         "Joins",    "Keeps",       "Leaves",        "Lets",      "Lists",
    "Loads",      "Locks",    "Logs",        "Looks",         "Makes",     "Maps",
    "Matches",    "May",      "Moves",       "Names",         "Needs",     "Never",
    "Notifies",   "Numbers",  "Offers",      "Omits",         "Opens",     "Orders",
    "Overwrites", "Pads",     "Parses",      "Passes",        "Pauses",    "Prefers",
    "Prints",     "Puts",     "Queries",     "Raises",        "Reaches",   "Reads",
    "Reaps",      "Refuses",  "Rejects",     "Releases",      "Removes",   "Replaces",
    "Reports",    "Reserves", "Resets",      "Resolves",      "Returns",   "Rounds",
    "Runs",       "Searches", "Seeks",       "Selects",       "Sends",     "Separates",
    "Serializes", "Serves",   "Sets",        "Shares",        "Shifts",    "Shortens",
    "Shows",      "Skips",    "Sleeps",      "Speaks",        "Splits",    "Starts",
    "Stays",      "Stops",    "Stores",      "Succeeds",      "Supports",  "Survives",
    "Swaps",      "Takes",    "Throws",      "Tokenizes",     "Treats",    "Trims",
    "Truncates",  "Turns",    "Undoes",      "Unfolds",       "Unloads",   "Uses",
    "Waits",      "Warns",    "Watches",     "Widens",        "Works",     "Wraps",
    "Writes"};

// A name promises what the class does. Some verbs are also plural nouns, as in "NamesAreSorted";
// the next word shows which.
bool IsPromise(const std::string& name)
{
    static const std::set<std::string> wordsAfterPlurals = {"Are",     "Become", "Can",  "Cannot",
                                                            "Enclose", "End",    "Go",   "Have",
                                                            "Keep",    "May",    "Stay", "Take"};
    const std::vector<std::string> words = WordsOf(name);
    if (words.empty() || c_verbs.count(words[0]) == 0)
        return false;
    const bool mayBeNoun = words.size() > 1 && words[0].ends_with('s');
    return !mayBeNoun || wordsAfterPlurals.count(words[1]) == 0;
}

// Returns "Suite.Name" for each test in the sources under tests/.
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
        EXPECT_TRUE(IsPromise(test.substr(test.find('.') + 1)))
            << test << ": if the first word is a verb, add it to c_verbs";
}

TEST(TestNamesTest, RejectsPluralNouns)
{
    EXPECT_TRUE(IsPromise("NamesTheFile"));

    EXPECT_FALSE(IsPromise("NamesAreSorted"));
    EXPECT_FALSE(IsPromise("InterruptsEndIt"));
    EXPECT_FALSE(IsPromise("Directories"));
    EXPECT_FALSE(IsPromise(""));
}

} // namespace
} // namespace Toolkit::TestSupport
