#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Toolkit::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// One folder of the library uses another.
using Uses = std::set<std::pair<std::string, std::string>>;

// All matches of `pattern` in `text`.
std::vector<std::smatch> FindAll(const std::string& text, const std::regex& pattern)
{
    return {std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator()};
}

std::string Page()
{
    return ReadWholeFile(TOOLKIT_SOURCE_DIR "/docs/architecture.md");
}

// The arrows of the graph: "archive --> logging & files".
Uses Arrows()
{
    Uses arrows;
    const std::string page = Page();
    for (const std::smatch& line : FindAll(page, std::regex(R"((\w+) --> ([\w &]+))"))) {
        const std::string targets = line[2];
        for (const std::smatch& target : FindAll(targets, std::regex(R"(\w+)")))
            arrows.emplace(line[1], target[0]);
    }
    return arrows;
}

// The folder of a file that is named in the table of exceptions, such as "core/FSStream", or the
// folder itself.
Uses Exceptions()
{
    Uses exceptions;
    const std::string page = Page();
    for (const std::smatch& row : FindAll(page, std::regex(R"(\n\| (`.*`) \| (`.*`) \|)"))) {
        const std::string from = row[1];
        const std::string to = row[2];
        const std::regex name("`(\\w+)[^`]*`");
        for (const std::smatch& user : FindAll(from, name)) {
            for (const std::smatch& used : FindAll(to, name))
                exceptions.emplace(user[1], used[1]);
        }
    }
    return exceptions;
}

// Who includes whose headers; what everything includes is left out.
Uses ReadIncludes()
{
    Uses includes;
    const std::filesystem::path root = TOOLKIT_SOURCE_DIR "/sources/toolkit";
    const std::regex include("#include \"toolkit/(\\w+)/");
    for (const auto& file : std::filesystem::recursive_directory_iterator(root)) {
        const std::string folder = file.path().parent_path().filename();
        if (!file.is_regular_file() || file.path().parent_path() == root)
            continue;
        const std::string text = ReadWholeFile(file.path());
        for (const std::smatch& line : FindAll(text, include)) {
            if (line[1] != folder && line[1] != "core" && line[1] != "base")
                includes.emplace(folder, line[1]);
        }
    }
    return includes;
}

const Uses& Includes()
{
    static const Uses includes = ReadIncludes();
    return includes;
}

Uses Difference(const Uses& all, const Uses& known)
{
    Uses rest;
    std::set_difference(all.begin(), all.end(), known.begin(), known.end(),
                        std::inserter(rest, rest.end()));
    return rest;
}

// The names of the files in which `pattern` is found.
std::set<std::string> SourcesWith(const std::string& pattern)
{
    std::set<std::string> names;
    const std::regex searched(pattern);
    for (const auto& file :
         std::filesystem::recursive_directory_iterator(TOOLKIT_SOURCE_DIR "/sources/toolkit")) {
        if (file.is_regular_file() && std::regex_search(ReadWholeFile(file.path()), searched))
            names.insert(file.path().filename());
    }
    return names;
}

TEST(ArchitectureTest, EveryUseIsOnTheMap)
{
    Uses known = Arrows();
    known.merge(Exceptions());

    EXPECT_THAT(Difference(Includes(), known), IsEmpty());
}

TEST(ArchitectureTest, EveryArrowOfTheMapIsAUse)
{
    const Uses arrows = Arrows();

    EXPECT_THAT(arrows, Not(IsEmpty()));
    EXPECT_THAT(Difference(arrows, Includes()), IsEmpty());
}

TEST(ArchitectureTest, EveryExceptionIsAUse)
{
    const Uses exceptions = Exceptions();

    EXPECT_THAT(exceptions, Not(IsEmpty()));
    EXPECT_THAT(Difference(exceptions, Includes()), IsEmpty());
}

// Failures of core types show in their results alone.
TEST(ArchitectureTest, CoreTypesDoNotLog)
{
    const Uses& includes = Includes();

    for (const char* folder : {"core", "threading", "encoding"})
        EXPECT_EQ(includes.count({folder, "logging"}), 0u) << folder;
}

TEST(ArchitectureTest, FoldersAreTheSubsystems)
{
    std::set<std::string> folders;
    for (const auto& entry :
         std::filesystem::directory_iterator(TOOLKIT_SOURCE_DIR "/sources/toolkit")) {
        if (entry.is_directory())
            folders.insert(entry.path().filename());
    }

    EXPECT_THAT(folders, ElementsAre("archive", "base", "config", "core", "datetime", "encoding",
                                     "files", "framework", "ipc", "logging", "module", "regExp",
                                     "system", "threading"));
}

// Settings are the application's affair.
TEST(ArchitectureTest, NoSourceReadsSettings)
{
    EXPECT_THAT(SourcesWith("#include \"toolkit/config/IniFile.h\""),
                ElementsAre("IniFile.cpp", "Toolkit.h"));
}

// What leaves the library by itself is thrown in one place.
TEST(ArchitectureTest, OneSourceThrows)
{
    EXPECT_THAT(SourcesWith("\n *throw [^;]"), ElementsAre("RegExp.Exceptions.cpp"));
}

} // namespace
} // namespace Toolkit::Testing
