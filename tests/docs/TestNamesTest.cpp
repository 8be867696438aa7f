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
    "Accepts",      "Adds",        "Agrees",      "Allocates",     "Answers",   "Appends",
    "Applies",      "Asks",        "Assumes",     "Begins",        "Belongs",   "Blocks",
    "Bounds",       "Breaks",      "Brings",      "Calls",         "Can",       "Cannot",
    "Catches",      "Chains",      "Changes",     "Checks",        "Clears",    "Closes",
    "Collects",     "Compares",    "Compiles",    "Completes",     "Composes",  "Computes",
    "Concatenates", "Connects",    "Constructs",  "Consumes",      "Contains",  "Continues",
    "Converts",     "Copies",      "Counts",      "Creates",       "Crosses",   "Cuts",
    "Dates",        "Decodes",     "Defines",     "Deletes",       "Describes", "Deserializes",
    "Destroys",     "Differs",     "Disconnects", "Distinguishes", "Does",      "Doubles",
    "Drops",        "Empties",     "Encodes",     "Ends",          "Enters",    "Escapes",
    "Evaluates",    "Exists",      "Exits",       "Extracts",      "Fails",     "Fills",
    "Filters",      "Finds",       "Flushes",     "Folds",         "Follows",   "Forgets",
    "Formats",      "Forwards",    "Frees",       "Gets",          "Gives",     "Goes",
    "Hands",        "Has",         "Hides",       "Holds",         "Honours",   "Ignores",
    "Includes",     "Initializes", "Inserts",     "Installs",      "Is",        "Joins",
    "Keeps",        "Knows",       "Leaves",      "Lets",          "Lists",     "Lives",
    "Loads",        "Locks",       "Logs",        "Looks",         "Loses",     "Lowers",
    "Makes",        "Maps",        "Matches",     "May",           "Meets",     "Misses",
    "Moves",        "Names",       "Needs",       "Nests",         "Never",     "Notifies",
    "Numbers",      "Offers",      "Omits",       "Only",          "Opens",     "Orders",
    "Overwrites",   "Pads",        "Parses",      "Passes",        "Pauses",    "Polls",
    "Prefers",      "Prints",      "Puts",        "Queries",       "Quotes",    "Raises",
    "Reaches",      "Reads",       "Reaps",       "Refuses",       "Rejects",   "Releases",
    "Removes",      "Replaces",    "Reports",     "Reserves",      "Resets",    "Resolves",
    "Rests",        "Returns",     "Rounds",      "Runs",          "Says",      "Searches",
    "Seeks",        "Sees",        "Selects",     "Sends",         "Separates", "Serializes",
    "Serves",       "Sets",        "Shares",      "Shifts",        "Shortens",  "Shows",
    "Skips",        "Sleeps",      "Sorts",       "Speaks",        "Splits",    "Starts",
    "Stays",        "Steps",       "Stops",       "Stores",        "Subtracts", "Succeeds",
    "Supports",     "Survives",    "Swaps",       "Sweeps",        "Takes",     "Throws",
    "Tokenizes",    "Treats",      "Tries",       "Trims",         "Truncates", "Turns",
    "Understands",  "Undoes",      "Unloads",     "Unlocks",       "Uses",      "Waits",
    "Warns",        "Watches",     "Widens",      "Works",         "Wraps",     "Writes"};

// A name promises what the class does. Some verbs are plural nouns too, as in "NamesAreSorted"; the
// next word reveals them.
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
            << test << ": is it a verb that c_verbs lacks?";
}

TEST(TestNamesTest, RefusesPluralNouns)
{
    EXPECT_TRUE(IsPromise("NamesTheFile"));

    EXPECT_FALSE(IsPromise("NamesAreSorted"));
    EXPECT_FALSE(IsPromise("InterruptsEndIt"));
    EXPECT_FALSE(IsPromise("Directories"));
    EXPECT_FALSE(IsPromise(""));
}

} // namespace
} // namespace Toolkit::TestSupport
