#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Toolkit::TestSupport {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

// Pairs in which the first room, or file, uses the second.
using Uses = std::set<std::pair<std::string, std::string>>;

const fs::path& GetRoot()
{
    static const fs::path root = TOOLKIT_SOURCE_DIR "/sources/toolkit";
    return root;
}

// Returns all matches of `pattern` in `text`.
std::vector<std::smatch> FindAll(const std::string& text, const std::regex& pattern)
{
    return {std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator()};
}

std::string ReadPage()
{
    return ReadWholeFile(TOOLKIT_SOURCE_DIR "/docs/architecture.md");
}

// Returns the arrows of the diagram. Each is named after its two rooms: "archive-logging".
Uses ReadArrows()
{
    const std::string diagram = ReadWholeFile(TOOLKIT_SOURCE_DIR "/docs/diagrams/rooms.svg");
    Uses arrows;
    for (const std::smatch& arrow : FindAll(diagram, std::regex(R"|(<path id="(\w+)-(\w+)")|")))
        arrows.emplace(arrow[1], arrow[2]);
    return arrows;
}

// Returns the rooms in the table and their floors: "| 4 | `files` | ... |".
std::map<std::string, int> ReadFloors()
{
    std::map<std::string, int> floors;
    const std::string page = ReadPage();
    for (const std::smatch& row : FindAll(page, std::regex(R"(\n\| (\d) \| ([^|]+) \|)"))) {
        const std::string rooms = row[2];
        for (const std::smatch& room : FindAll(rooms, std::regex("`(\\w+)`")))
            floors[room[1]] = std::stoi(row[1]);
    }
    return floors;
}

// File names such as "files/FFile.cpp", with the contents of the files. Excludes files outside the
// rooms.
using Sources = std::map<std::string, std::string>;

const Sources& ReadAllSources()
{
    static const Sources sources = [] {
        Sources found;
        for (const auto& file : fs::recursive_directory_iterator(GetRoot())) {
            if (file.is_regular_file() && file.path().parent_path() != GetRoot())
                found[fs::relative(file.path(), GetRoot())] = ReadWholeFile(file.path());
        }
        return found;
    }();
    return sources;
}

// Returns which source includes which header, both named as in `Sources`.
const Uses& FindIncludes()
{
    static const Uses includes = [] {
        Uses found;
        const std::regex include("#include \"toolkit/(\\w+/[^\"]+)\"");
        for (const auto& [name, text] : ReadAllSources()) {
            for (const std::smatch& line : FindAll(text, include))
                found.emplace(name, line[1]);
        }
        return found;
    }();
    return includes;
}

std::string GetRoom(const std::string& name)
{
    return name.substr(0, name.find('/'));
}

bool IsPrivateHeader(const std::string& name)
{
    return name.ends_with(".Private.h");
}

// Returns which room uses which other room.
Uses FindRoomUses()
{
    Uses uses;
    for (const auto& [from, to] : FindIncludes()) {
        if (GetRoom(from) != GetRoom(to))
            uses.emplace(GetRoom(from), GetRoom(to));
    }
    return uses;
}

// Returns the common part of the names of a header, its sources and their platform variants:
// "ipc/Socket". A class may have a dot in its name: "regExp/RegExp.Exceptions".
std::string GetStem(const std::string& name)
{
    const std::string whole = name.substr(0, name.rfind('.'));
    const bool isClassName = !IsPrivateHeader(name) && ReadAllSources().count(whole + ".h") > 0;
    return isClassName ? whole : name.substr(0, name.find('.'));
}

// Returns the stems that `stem` uses, directly and indirectly.
std::set<std::string> FindReachable(const std::multimap<std::string, std::string>& uses,
                                    const std::string& stem)
{
    std::set<std::string> reached;
    const std::function<void(const std::string&)> follow = [&](const std::string& from) {
        const auto [begin, end] = uses.equal_range(from);
        for (auto use = begin; use != end; ++use) {
            if (reached.insert(use->second).second)
                follow(use->second);
        }
    };
    follow(stem);
    return reached;
}

// Returns the names of the files that `isSelected` selects and in which `pattern` matches.
std::set<std::string> FindSourcesWith(
    const std::string& pattern, const std::function<bool(const std::string&)>& isSelected =
                                    [](const std::string&) { return true; })
{
    std::set<std::string> names;
    const std::regex searched(pattern);
    for (const auto& [name, text] : ReadAllSources()) {
        if (isSelected(name) && std::regex_search(text, searched))
            names.insert(name);
    }
    return names;
}

TEST(ArchitectureTest, PutsEveryRoomOnAFloor)
{
    std::set<std::string> rooms;
    for (const auto& entry : fs::directory_iterator(GetRoot())) {
        if (entry.is_directory())
            rooms.insert(entry.path().filename());
    }

    std::set<std::string> onThePage;
    for (const auto& [room, floor] : ReadFloors())
        onThePage.insert(room);
    EXPECT_EQ(onThePage, rooms);
}

TEST(ArchitectureTest, LetsRoomsUseLowerFloorsOnly)
{
    std::map<std::string, int> floors = ReadFloors();
    Uses climbing;
    for (const auto& [from, to] : FindIncludes()) {
        if (GetRoom(from) != GetRoom(to) && floors[GetRoom(from)] <= floors[GetRoom(to)])
            climbing.emplace(from, to);
    }

    // The count block of a smart_ptr contains a mutex, which is unused and only keeps the layout.
    EXPECT_THAT(climbing, ElementsAre(std::pair("core/smart_ptr.h", "threading/Mutex.h")));
}

// The diagram shows the uses of `core` and `base` as one arrow without an id, because every room
// uses both. It omits what `core` uses.
TEST(ArchitectureTest, ShowsEachUseAsAnArrowInTheDiagram)
{
    Uses drawn;
    for (const auto& [from, to] : FindRoomUses()) {
        if (from != "core" && to != "core" && to != "base")
            drawn.emplace(from, to);
    }

    EXPECT_THAT(drawn, Not(IsEmpty()));
    EXPECT_EQ(ReadArrows(), drawn);
}

TEST(ArchitectureTest, UsesOnlyStandardAndSystemTypesOnTheGroundFloor)
{
    const auto isGroundFloor = [](const std::string& name) { return GetRoom(name) == "base"; };

    EXPECT_THAT(FindSourcesWith("#include \"toolkit/(?!base/)", isGroundFloor), IsEmpty());
    EXPECT_THAT(FindSourcesWith("#include <(wx|unicode|pcre)|TString<", isGroundFloor), IsEmpty());
}

TEST(ArchitectureTest, KeepsPrivateHeadersInTheirRoom)
{
    Uses crossing;
    for (const auto& [from, to] : FindIncludes()) {
        if (IsPrivateHeader(to) && GetRoom(from) != GetRoom(to))
            crossing.emplace(from, to);
    }

    EXPECT_THAT(crossing, IsEmpty());
}

// All headers of these rooms are private: they need no ".Private" suffix and are not installed.
TEST(ArchitectureTest, HasNoPublicHeadersInPrivateRooms)
{
    const std::string list = ReadWholeFile(GetRoot() / "CMakeLists.txt");
    const auto isPrivateRoom = [](const std::string& name) {
        return GetRoom(name) == "base" || GetRoom(name) == "framework";
    };

    for (const std::string& name : FindSourcesWith("#pragma once", isPrivateRoom)) {
        EXPECT_FALSE(IsPrivateHeader(name)) << name;
        EXPECT_EQ(list.find("    " + name + "\n"), std::string::npos) << name;
    }
}

TEST(ArchitectureTest, HasNoCircularIncludes)
{
    std::multimap<std::string, std::string> uses;
    for (const auto& [from, to] : FindIncludes()) {
        if (GetStem(from) != GetStem(to))
            uses.emplace(GetStem(from), GetStem(to));
    }
    std::set<std::string> circular;
    for (const auto& use : uses) {
        if (FindReachable(uses, use.first).count(use.first) > 0)
            circular.insert(use.first);
    }

    EXPECT_FALSE(uses.empty());
    EXPECT_THAT(circular, IsEmpty());
}

// A program compiles without wxWidgets unless it uses a class that derives from a wxWidgets class.
TEST(ArchitectureTest, IncludesWxWidgetsInHeadersOnlyToDeriveFromIt)
{
    const auto isHeader = [](const std::string& name) {
        return name.ends_with(".h") && GetRoom(name) != "framework";
    };

    EXPECT_THAT(FindSourcesWith("#include <wx/", isHeader),
                UnorderedElementsAre(
                    // public
                    "archive/ArchiveZipEntry.h", "logging/WxLogForwarder.h", "threading/Thread.h",
                    // private
                    "archive/ArchiveFile.Private.h", "archive/ArchiveStream.Private.h",
                    "ipc/IPCInternalServer.Private.h", "threading/CountedMutex.Private.h"));
}

TEST(ArchitectureTest, UsesWxLogNullOnlyInTheFrameworkRoom)
{
    EXPECT_THAT(FindSourcesWith("wxLogNull"), ElementsAre("framework/Silence.h"));
}

// These rooms report failures only through results.
TEST(ArchitectureTest, DoesNotLogInCoreTypes)
{
    const Uses uses = FindRoomUses();

    for (const char* room : {"core", "threading", "encoding"})
        EXPECT_EQ(uses.count({room, "logging"}), 0u) << room;
}

// Only the application reads settings.
TEST(ArchitectureTest, DoesNotReadSettings)
{
    EXPECT_THAT(FindSourcesWith("#include \"toolkit/config/IniFile.h\""),
                ElementsAre("config/IniFile.cpp"));
}

// The listed sources throw when a pattern is invalid, wxWidgets cannot be started, or memory runs
// out.
TEST(ArchitectureTest, ThrowsInTheListedSourcesOnly)
{
    EXPECT_THAT(FindSourcesWith("\n *throw [^;]"),
                ElementsAre("ipc/IPCServer.cpp", "logging/FileLogger.cpp",
                            "regExp/RegExp.Exceptions.cpp", "threading/FrameworkHold.cpp"));
}

} // namespace
} // namespace Toolkit::TestSupport
