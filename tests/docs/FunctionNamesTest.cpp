#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>

namespace Toolkit::TestSupport {
namespace {

namespace fs = std::filesystem;

using testing::IsSupersetOf;
using testing::UnorderedElementsAre;

// First words of functions that perform an action.
const std::set<std::string> c_verbs = {
    "Accept",   "Add",       "Adopt",        "Align",     "Allocate", "Allow",     "Append",
    "Ask",      "Attach",    "Begin",        "Bind",      "Call",     "Cat",       "Change",
    "Check",    "Choose",    "Close",        "Combine",   "Compare",  "Compile",   "Complain",
    "Complete", "Compute",   "Connect",      "Convert",   "Copy",     "Count",     "Create",
    "Cut",      "Decode",    "Deliver",      "Derive",    "Describe", "Detach",    "Discard",
    "Draw",     "Encode",    "End",          "Enter",     "Escape",   "Estimate",  "Examine",
    "Execute",  "Extract",   "Fail",         "Find",      "Finish",   "Fold",      "Follow",
    "Format",   "Forward",   "Free",         "Get",       "Give",     "Hand",      "Handle",
    "Hash",     "Insert",    "Install",      "Join",      "Keep",     "List",      "Listen",
    "Load",     "Locate",    "Make",         "Mark",      "Measure",  "Merge",     "Move",
    "Name",     "Normalize", "Open",         "Overwrite", "Pad",      "Parse",     "Perform",
    "Poll",     "Prepare",   "Prime",        "Print",     "Put",      "Query",     "Read",
    "Receive",  "Refuse",    "Reinitialize", "Release",   "Remove",   "Renew",     "Repeat",
    "Replace",  "Report",    "Require",      "Reserve",   "Resolve",  "Restart",   "Restore",
    "Restrict", "Retry",     "Run",          "Search",    "Send",     "Serve",     "Set",
    "Shorten",  "Show",      "Shrink",       "Skip",      "Split",    "Spool",     "Start",
    "Stop",     "Store",     "Take",         "Throw",     "Tokenize", "Transcode", "Translate",
    "Trim",     "Truncate",  "Try",          "Visit",     "Wait",     "Widen",     "Write"};

// First words of predicates, conversions and handlers.
const std::set<std::string> c_otherFirstWords = {
    "Acts",  "Are",   "Begins",  "Can",  "Connects", "Contains", "Does",    "Ends",
    "Finds", "Has",   "Ignores", "Is",   "Leads",    "Looks",    "Matches", "May",
    "Names", "Needs", "Owns",    "Runs", "Starts",   "From",     "To",      "On"};

// Exported functions, whose names cannot change.
const std::set<std::string> c_exportedNames = {"DllToolkitLoad", "DllToolkitUnload",
                                               "Failed",         "GetCodeLength",
                                               "GetDataLength",  "MacInitCocoa"};

// Returns what the first group of `pattern` matches in the sources of the library, its tools and
// the examples.
std::set<std::string> FindInSources(const std::string& pattern)
{
    const std::regex searched(pattern);
    std::set<std::string> found;
    for (const std::string folder : {"/examples", "/sources/toolkit", "/tools"}) {
        for (const auto& file : fs::recursive_directory_iterator(TOOLKIT_SOURCE_DIR + folder)) {
            const fs::path extension = file.path().extension();
            if (extension != ".cpp" && extension != ".h")
                continue;
            const std::string text = ReadWholeFile(file.path());
            for (std::sregex_iterator match(text.begin(), text.end(), searched), end; match != end;
                 ++match)
                found.insert((*match)[1]);
        }
    }
    return found;
}

bool StartsWithAVerb(const std::string& function)
{
    static const std::regex firstWord("^[A-Z][a-z0-9]*");
    std::smatch found;
    std::regex_search(function, found, firstWord);
    const std::string word = found.str();
    return c_verbs.count(word) + c_otherFirstWords.count(word) + c_exportedNames.count(function) >
           0;
}

// Checks the functions outside classes: their declarations are not indented, and no class name
// precedes theirs.
TEST(FunctionNamesTest, StartsFunctionsWithAVerb)
{
    const std::set<std::string> functions =
        FindInSources(R"(\n[A-Za-z_][\w:<>,*& \[\]]*[ *&]([A-Z][a-z]\w*)\()");
    EXPECT_THAT(functions, IsSupersetOf({"EncodeUtf8", "MakeVisible", "DllToolkitLoad"}));

    for (const std::string& function : functions)
        EXPECT_TRUE(StartsWithAVerb(function))
            << function << ": if the first word is a verb, add it to c_verbs";
}

TEST(FunctionNamesTest, HasOnlyTheListedNamespaces)
{
    EXPECT_THAT(FindInSources(R"(\nnamespace ([\w:]+) \{)"),
                UnorderedElementsAre("Base", "CLI", "Framework", "HostPlugIn", "MailTool",
                                     "StreamResult", "Tool", "Toolkit", "Toolkit::Base",
                                     "Toolkit::Framework", "Toolkit::Ipc", "Toolkit::Pcre"));
}

} // namespace
} // namespace Toolkit::TestSupport
