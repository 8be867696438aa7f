#include "toolkit/config/IniFile.h"

#include "support/CapturedLog.h"
#include "support/OutOfMemory.h"
#include "support/ScopedLocale.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <future>
#include <latch>
#include <new>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::CapturedLog;
using TestSupport::FailingAllocation;
using TestSupport::IsLogLine;
using TestSupport::ScopedLocale;
using TestSupport::TempDir;

std::string Bytes(const char* text, std::size_t length)
{
    return {text, length};
}

TString<wchar_t> Value(const IniFile& ini, const TString<wchar_t>& section,
                       const TString<wchar_t>& key)
{
    return ini.GetValue(section, key, L"(none)");
}

std::vector<TString<wchar_t>> Keys(const IniFile& ini, const TString<wchar_t>& section)
{
    std::vector<TString<wchar_t>> keys{L"old"};
    ini.GetKeyList(section, keys);
    return keys;
}

class IniFileTest : public testing::Test {
protected:
    IniFile Load(const std::string& bytes) const
    {
        IniFile ini(m_directory.WriteFile(L"settings.ini", bytes));
        EXPECT_TRUE(ini.IsLoaded());
        return ini;
    }

    TempDir m_directory;
};

TEST_F(IniFileTest, TrimsSpacesAndTabsFromKeysAndValues)
{
    const std::pair<std::string, std::pair<TString<wchar_t>, TString<wchar_t>>> cases[] = {
        {"key = value", {L"key", L"value"}},
        {"key=value", {L"key", L"value"}},
        {" \tkey\t \t=\t value \t", {L"key", L"value"}},
        {"a key = a value", {L"a key", L"a value"}},
        {"\vkey\f=\vvalue\f", {L"\vkey\f", L"\vvalue\f"}},
        {"key=", {L"key", L""}},
        {"key= \t ", {L"key", L""}},
        {"=value", {L"", L"value"}},
        {"=", {L"", L""}}};
    for (const auto& [line, expected] : cases) {
        SCOPED_TRACE(line);
        const IniFile ini = Load("[Main]\n" + line);
        EXPECT_THAT(Keys(ini, L"Main"), ElementsAre(expected.first));
        EXPECT_EQ(Value(ini, L"Main", expected.first), expected.second);
    }
}

TEST_F(IniFileTest, ReadsAPipeToItsEnd)
{
    const std::string path = m_directory.Path() / "pipe";
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const auto writer =
        std::async(std::launch::async, [&path] { std::ofstream(path) << "[Main]\na=1\n"; });

    const IniFile ini(m_directory.File(L"pipe"));

    EXPECT_EQ(ini.GetUint32(L"Main", L"a", 0), 1u);
}

TEST_F(IniFileTest, EndsTheKeyAtTheFirstEqualsSign)
{
    const IniFile ini = Load("[Main]\na=b=c\nb==\n");

    EXPECT_EQ(Value(ini, L"Main", L"a"), L"b=c");
    EXPECT_EQ(Value(ini, L"Main", L"b"), L"=");
}

TEST_F(IniFileTest, KeepsQuotesAndCommentCharacters)
{
    const IniFile ini = Load("[Main]\na=\"x y\"\nb=1 ; two\n#c=3\n ;d=4\n");

    EXPECT_EQ(Value(ini, L"Main", L"a"), L"\"x y\"");
    EXPECT_EQ(Value(ini, L"Main", L"b"), L"1 ; two");
    EXPECT_EQ(Value(ini, L"Main", L"#c"), L"3");
    EXPECT_EQ(Value(ini, L"Main", L";d"), L"4");
}

TEST_F(IniFileTest, IgnoresLinesThatAreNeitherHeadersNorKeys)
{
    const IniFile ini = Load("[Main]\n\n;a=1\n;[Other]\nword\nOther]\n[Other\n[\n]\n  [Other]\n"
                             "[Other] \n \t\nb=2\n");

    EXPECT_THAT(Keys(ini, L"Main"), ElementsAre(L"b"));
    EXPECT_FALSE(ini.HasSection(L"Other"));
}

TEST_F(IniFileTest, ReadsKeysThatBeginWithABracket)
{
    const IniFile ini = Load("[Main]\n[Main=1\n[a]=2\n");

    EXPECT_EQ(Value(ini, L"Main", L"[Main"), L"1");
    EXPECT_EQ(Value(ini, L"Main", L"[a]"), L"2");
}

TEST_F(IniFileTest, UsesAllTextBetweenTheBracketsAsTheName)
{
    constexpr std::pair<const char*, const wchar_t*> cases[] = {
        {"[Main]", L"Main"},      {"[ Main ]", L" Main "}, {"[]", L""},
        {"[a=b]", L"a=b"},        {"[;]", L";"},           {"[[a]]", L"[a]"},
        {"[\xC3\xA9]", L"\u00E9"}};
    for (const auto& [header, name] : cases) {
        SCOPED_TRACE(header);
        const IniFile ini = Load(std::string(header) + "\nkey=value\n");
        EXPECT_TRUE(ini.HasSection(name));
        EXPECT_EQ(Value(ini, name, L"key"), L"value");
    }
}

TEST_F(IniFileTest, AcceptsAnEmptySection)
{
    const IniFile ini = Load("[Empty]\n[Main]\na=1\n");

    EXPECT_TRUE(ini.HasSection(L"Empty"));
    EXPECT_THAT(Keys(ini, L"Empty"), IsEmpty());
}

TEST_F(IniFileTest, ComparesNamesCaseSensitively)
{
    const IniFile ini = Load("[Main]\nA=1\na=2\n[main]\nb=3\n");

    EXPECT_THAT(Keys(ini, L"Main"), ElementsAre(L"A", L"a"));
    EXPECT_EQ(Value(ini, L"Main", L"A"), L"1");
    EXPECT_EQ(Value(ini, L"Main", L"a"), L"2");
    EXPECT_THAT(Keys(ini, L"main"), ElementsAre(L"b"));
    EXPECT_FALSE(ini.HasSection(L"MAIN"));
}

TEST_F(IniFileTest, KeepsTheFirstValueOfARepeatedKey)
{
    const IniFile ini = Load("[Main]\nx=1\nx=2\n x =3\n");

    EXPECT_EQ(ini.GetUint32(L"Main", L"x", 0), 1u);
}

TEST_F(IniFileTest, ContinuesASectionAtARepeatedHeader)
{
    const IniFile ini = Load("[Main]\na=1\n[Other]\na=2\n[Main]\na=3\nb=4\n");

    EXPECT_THAT(Keys(ini, L"Main"), ElementsAre(L"a", L"b"));
    EXPECT_EQ(Value(ini, L"Main", L"a"), L"1");
    EXPECT_EQ(Value(ini, L"Main", L"b"), L"4");
    EXPECT_THAT(Keys(ini, L"Other"), ElementsAre(L"a"));
}

TEST_F(IniFileTest, IgnoresKeysBeforeTheFirstHeader)
{
    const IniFile ini = Load("a=1\n[Main]\nb=2\n");

    EXPECT_FALSE(ini.HasSection(L""));
    EXPECT_THAT(Keys(ini, L"Main"), ElementsAre(L"b"));
}

TEST_F(IniFileTest, ListsKeysInCodePointOrder)
{
    const IniFile ini = Load("[Main]\nb=\n\xF0\x9F\x98\x80=\n\xEF\xBF\xBD=\na=\nB=\n10=\n9=\n");

    EXPECT_THAT(Keys(ini, L"Main"),
                ElementsAre(L"10", L"9", L"B", L"a", L"b", L"\uFFFD", L"\U0001F600"));
    EXPECT_THAT(Keys(ini, L"Other"), IsEmpty());
}

TEST_F(IniFileTest, FindsAnEmptyValue)
{
    const IniFile ini = Load("[Main]\nn=\n");

    EXPECT_TRUE(ini.HasValue(L"Main", L"n"));
    EXPECT_FALSE(ini.HasValue(L"Main", L"m"));
    EXPECT_FALSE(ini.HasValue(L"Other", L"n"));
    EXPECT_EQ(Value(ini, L"Main", L"n"), L"");
    EXPECT_EQ(ini.GetUint32(L"Main", L"n", 7), 7u);
    EXPECT_EQ(ini.GetInt32(L"Main", L"n", -7), -7);
    EXPECT_TRUE(ini.GetBool(L"Main", L"n", true));
}

TEST_F(IniFileTest, ReturnsTheDefaultItselfForAMissingValue)
{
    const IniFile ini = Load("[Main]\nn=1\n");
    const TString<wchar_t> none = L"none";

    EXPECT_EQ(&ini.GetValue(L"Main", L"m", none), &none);
    EXPECT_EQ(&ini.GetValue(L"Other", L"n", none), &none);
    EXPECT_EQ(&ini.GetValue(L"Main", L"n", none), &ini.GetValue(L"Main", L"n", L"other"));
    EXPECT_EQ(ini.GetUint32(L"Main", L"m", 7), 7u);
    EXPECT_EQ(ini.GetInt32(L"Other", L"n", -7), -7);
    EXPECT_TRUE(ini.GetBool(L"Main", L"m", true));
}

TEST_F(IniFileTest, ReadsTheUnsignedNumberAtTheBeginningOfAValue)
{
    constexpr std::pair<const char*, unsigned int> cases[] = {{"12", 12},
                                                              {"12abc", 12},
                                                              {"abc", 0},
                                                              {"-1", 4294967295},
                                                              {"+5", 5},
                                                              {"007", 7},
                                                              {"1.9", 1},
                                                              {"0x10", 0},
                                                              {"1 2", 1},
                                                              {"4294967295", 4294967295},
                                                              {"4294967296", 4294967295},
                                                              {"\"3\"", 0},
                                                              {"\v4", 4}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        const IniFile ini = Load("[Main]\nn=" + std::string(text));
        EXPECT_EQ(ini.GetUint32(L"Main", L"n", 99), expected);
    }
}

TEST_F(IniFileTest, ReadsTheSignedNumberAtTheBeginningOfAValue)
{
    constexpr std::pair<const char*, int> cases[] = {
        {"12", 12},   {"-12abc", -12}, {"abc", 0},
        {"-", 0},     {"+5", 5},       {"2147483648", 2147483647},
        {"1,000", 1}, {"- 5", 0},      {"-2147483649", -2147483647 - 1}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        const IniFile ini = Load("[Main]\nn=" + std::string(text));
        EXPECT_EQ(ini.GetInt32(L"Main", L"n", 99), expected);
    }
}

TEST_F(IniFileTest, ReadsOnlyTheNumberOneAsTrue)
{
    constexpr std::pair<const char*, bool> cases[] = {
        {"1", true},     {" 1", true},   {"01", true}, {"1abc", true}, {"2", false},
        {"true", false}, {"yes", false}, {"0", false}, {"-1", false},  {"11", false}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        const IniFile ini = Load("[Main]\non=" + std::string(text));
        EXPECT_EQ(ini.GetBool(L"Main", L"on", !expected), expected);
    }
}

TEST_F(IniFileTest, ReadsLinesWithAnyLineEndOrNone)
{
    for (const std::string& bytes :
         {std::string("[Main]\nn=1"), std::string("[Main]\r\nn=1\r\n"), std::string("[Main]\rn=1"),
          std::string("\r\n[Main]\n\n\rn=1\n\n")}) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        EXPECT_EQ(Value(Load(bytes), L"Main", L"n"), L"1");
    }
}

TEST_F(IniFileTest, ReadsAHeaderInAFileOfOneLine)
{
    EXPECT_TRUE(Load("[Main]").HasSection(L"Main"));
}

TEST_F(IniFileTest, LoadsAnEmptyFile)
{
    const CapturedLog log;
    const IniFile ini = Load("");

    EXPECT_FALSE(ini.HasSection(L""));
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(IniFileTest, LogsAMissingFileInOneLineAndReturnsDefaults)
{
    const CapturedLog log;
    const TString<wchar_t> path = m_directory.File(L"missing \u6587.ini");
    const IniFile ini(path);

    EXPECT_THAT(log.Lines(), ElementsAre(IsLogLine(SeverityError, 64, L"Parse",
                                                   L"Unable to open file : " + path)));
    EXPECT_FALSE(ini.IsLoaded());
    EXPECT_FALSE(ini.HasSection(L""));
    EXPECT_FALSE(ini.HasValue(L"Main", L"n"));
    EXPECT_EQ(ini.GetInt32(L"Main", L"n", 5), 5);
    EXPECT_THAT(Keys(ini, L"Main"), IsEmpty());
}

TEST_F(IniFileTest, DoesNotLoadADirectory)
{
    const CapturedLog log;
    const IniFile ini(m_directory.File(L""));

    EXPECT_FALSE(ini.IsLoaded());
    EXPECT_EQ(log.Lines().size(), 1u);
}

TEST_F(IniFileTest, ReplacesTheSettingsInParse)
{
    IniFile ini = Load("[Main]\nn=1\n");

    EXPECT_TRUE(ini.Parse(m_directory.WriteFile(L"other.ini", "[Other]\nm=2\n")));
    EXPECT_FALSE(ini.HasSection(L"Main"));
    EXPECT_EQ(Value(ini, L"Other", L"m"), L"2");
}

TEST_F(IniFileTest, ParsesAFileNamedByOneOfItsValues)
{
    const TString<wchar_t> next = m_directory.WriteFile(L"next.ini", "[Other]\nm=2\n");
    IniFile ini = Load("[Main]\nnext=" + std::string(next.begin(), next.end()));

    EXPECT_TRUE(ini.Parse(ini.GetValue(L"Main", L"next", L"")));
    EXPECT_EQ(Value(ini, L"Other", L"m"), L"2");
}

TEST_F(IniFileTest, ListsKeysIntoAVectorThatHoldsTheSectionName)
{
    const std::string name(100, 'x');
    const IniFile ini = Load("[" + name + "]\na=1\nb=2\n");
    std::vector<TString<wchar_t>> names = {std::wstring(100, L'x')};

    ini.GetKeyList(names[0], names);
    EXPECT_THAT(names, ElementsAre(L"a", L"b"));
}

// Parses while allocation number `allocation`, counted from 0, fails. Returns false if parsing
// makes fewer allocations.
bool ParseWithAFailingAllocation(IniFile& ini, const TString<wchar_t>& path, long allocation)
{
    const FailingAllocation failing(allocation);
    const bool isParsed = ini.Parse(path);
    EXPECT_EQ(isParsed, !failing.HasFailed());
    return failing.HasFailed();
}

TEST_F(IniFileTest, HasNoSettingsWhenParseRunsOutOfMemory)
{
    const TString<wchar_t> path = m_directory.WriteFile(
        L"long.ini", "[a section that is long]\na key that is long=" + std::string(50, 'v'));
    const TString<wchar_t> section = L"a section that is long";
    IniFile ini = Load("");

    long allocation = 0;
    for (; ParseWithAFailingAllocation(ini, path, allocation); ++allocation)
        EXPECT_FALSE(ini.HasSection(section)) << allocation;

    EXPECT_GT(allocation, 5);
    EXPECT_EQ(Value(ini, section, L"a key that is long"), std::wstring(50, L'v'));
}

TEST_F(IniFileTest, LogsAFileThatDoesNotFitIntoMemory)
{
    const TString<wchar_t> path =
        m_directory.WriteFile(L"large.ini", "[Main]\nn=1\n;" + std::string(1'000'000, 'x'));
    const CapturedLog log;
    IniFile ini = Load("");
    {
        const TestSupport::AllocationLimit limit(100'000);
        EXPECT_FALSE(ini.Parse(path));
    }
    EXPECT_FALSE(ini.HasSection(L"Main"));
    EXPECT_THAT(log.Lines(), ElementsAre(IsLogLine(SeverityError, 64, L"Parse",
                                                   L"Unable to open file : " + path)));
}

TEST_F(IniFileTest, ListsNoKeysWhenOutOfMemory)
{
    const IniFile ini = Load("[Main]\na=1\n" + std::string(200, 'k') + "=2\n");
    const TString<wchar_t> section = L"Main";
    std::vector<TString<wchar_t>> keys = {L"old"};
    {
        const TestSupport::AllocationLimit limit(500);
        ini.GetKeyList(section, keys);
    }
    EXPECT_THAT(keys, IsEmpty());
}

TEST_F(IniFileTest, ThrowsBadAllocInsteadOfReturningTheDefault)
{
    const IniFile ini = Load("[Main]\na=1\nb=" + std::string(200, 'v'));
    const TString<wchar_t> section = L"Main";
    const TString<wchar_t> key = L"a";
    {
        const TestSupport::AllocationLimit limit(500);
        EXPECT_THROW(ini.GetValue(section, key, key), std::bad_alloc);
        EXPECT_THROW(ini.GetUint32(section, key, 7), std::bad_alloc);
        EXPECT_THROW(ini.GetInt32(section, key, 7), std::bad_alloc);
        EXPECT_THROW(ini.GetBool(section, key, false), std::bad_alloc);
        EXPECT_TRUE(ini.HasValue(section, key));
    }
    EXPECT_EQ(ini.GetUint32(section, key, 7), 1u);
}

TEST_F(IniFileTest, LetsThreadsReadANewSectionConcurrently)
{
    constexpr int keyCount = 1000;
    std::string bytes = "[Main]\n";
    for (int key = 0; key < keyCount; ++key)
        bytes += "key" + std::to_string(key) + "=" + std::to_string(key) + "\n";
    const IniFile ini = Load(bytes);
    std::latch start(4);

    const auto sumUp = [&ini, &start] {
        start.arrive_and_wait();
        unsigned int sum = 0;
        for (int key = 0; key < keyCount; ++key)
            sum += ini.GetUint32(L"Main", L"key" + std::to_wstring(key), 0);
        return sum;
    };
    std::future<unsigned int> sums[4];
    for (auto& sum : sums)
        sum = std::async(std::launch::async, sumUp);
    for (auto& sum : sums)
        EXPECT_EQ(sum.get(), 499'500u);
}

TEST_F(IniFileTest, KeepsReferencesValidWhileOtherValuesAreRead)
{
    const IniFile ini = Load("[Main]\na=first value\nb=2\n[Other]\nc=3\n");
    const TString<wchar_t> none;
    const TString<wchar_t>& value = ini.GetValue(L"Main", L"a", none);

    Value(ini, L"Main", L"b");
    Value(ini, L"Other", L"c");
    EXPECT_EQ(&ini.GetValue(L"Main", L"a", none), &value);
    EXPECT_EQ(value, L"first value");
}

TEST_F(IniFileTest, FindsManyKeysAndSections)
{
    std::string bytes = "[Large]\n";
    for (int key = 0; key < 70'000; ++key)
        bytes += "\xE2\x82\xAC" + std::to_string(key) + "=" + std::to_string(key) + "\n";
    for (int section = 0; section < 3000; ++section)
        bytes += "[" + std::to_string(section) + "]\nkey=" + std::to_string(section) + "\n";
    const IniFile ini = Load(bytes);

    for (const unsigned int key : {0u, 49'151u, 49'152u, 65'535u, 65'536u, 69'999u})
        EXPECT_EQ(ini.GetUint32(L"Large", L"\u20AC" + std::to_wstring(key), 1), key);
    for (const unsigned int section : {0u, 1u, 1535u, 1536u, 2999u})
        EXPECT_EQ(ini.GetUint32(std::to_wstring(section), L"key", 1), section);
    EXPECT_FALSE(ini.HasValue(L"Large", L"\u20AC70000"));
    EXPECT_FALSE(ini.HasSection(L"3000"));
    EXPECT_EQ(Keys(ini, L"Large").size(), 70'000u);
}

TEST_F(IniFileTest, FindsShortKeysBesideLongOnes)
{
    const std::string longKey(5000, 'k');
    const IniFile ini = Load("[Main]\na=1\n" + longKey + "=2\nb=3\n");

    EXPECT_EQ(Value(ini, L"Main", L"a"), L"1");
    EXPECT_EQ(Value(ini, L"Main", std::wstring(5000, L'k')), L"2");
    EXPECT_EQ(Value(ini, L"Main", L"b"), L"3");
}

TEST_F(IniFileTest, DoesNotFindNamesByInvalidCodePointsOrUtf8Bytes)
{
    const IniFile ini = Load("[M\xC3\xA9]\n\xF0\x9F\x98\x80=1\n");
    const auto character = [](int code) { return TString<wchar_t>(static_cast<wchar_t>(code)); };

    EXPECT_TRUE(ini.HasValue(L"M\u00E9", character(0x1F600)));
    for (const int code : {-1, -61, 0xD83D, 0x110000, 0xF0}) {
        EXPECT_FALSE(ini.HasValue(L"M\u00E9", character(code))) << code;
        EXPECT_FALSE(ini.HasSection(L"M" + character(code))) << code;
    }
}

TEST_F(IniFileTest, MovesItsSettings)
{
    IniFile ini = Load("[Main]\nn=1\n");
    const IniFile moved = std::move(ini);

    EXPECT_EQ(Value(moved, L"Main", L"n"), L"1");
}

TEST_F(IniFileTest, ChangesSettingsButNotIsLoadedInParse)
{
    const CapturedLog log;
    IniFile loaded = Load("[Main]\nn=1\n");
    EXPECT_FALSE(loaded.Parse(m_directory.File(L"missing")));
    EXPECT_FALSE(loaded.HasSection(L"Main"));
    EXPECT_TRUE(loaded.IsLoaded());

    IniFile failed(m_directory.File(L"missing"));
    EXPECT_TRUE(failed.Parse(m_directory.File(L"settings.ini")));
    EXPECT_FALSE(failed.IsLoaded());
    EXPECT_EQ(Value(failed, L"Main", L"n"), L"1");
}

TEST_F(IniFileTest, KeepsCopiesIndependent)
{
    IniFile ini = Load("[Main]\nn=1\n");
    const IniFile copy = ini;
    ASSERT_TRUE(ini.Parse(m_directory.WriteFile(L"other.ini", "")));

    EXPECT_EQ(Value(copy, L"Main", L"n"), L"1");
    EXPECT_TRUE(copy.IsLoaded());
}

TEST_F(IniFileTest, HonoursEveryByteOrderMark)
{
    const std::string cases[] = {
        "\xEF\xBB\xBF[M]\nk=\xE2\x82\xAC", Bytes("\xFE\xFF\0[\0M\0]\0\n\0k\0=\x20\xAC", 16),
        Bytes("\xFF\xFE[\0M\0]\0\n\0k\0=\0\xAC\x20", 16),
        Bytes("\0\0\xFE\xFF\0\0\0[\0\0\0M\0\0\0]\0\0\0\n\0\0\0k\0\0\0=\0\0\x20\xAC", 32),
        Bytes("\xFF\xFE\0\0[\0\0\0M\0\0\0]\0\0\0\n\0\0\0k\0\0\0=\0\0\0\xAC\x20\0\0", 32)};
    for (const std::string& bytes : cases) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        EXPECT_EQ(Value(Load(bytes), L"M", L"k"), L"\u20AC");
    }
}

TEST_F(IniFileTest, ReadsInvalidUtf8AsLatin1)
{
    const IniFile ini = Load("[M\xE9]\nk=\xC3\xA9\nl=\xFF\n");

    EXPECT_EQ(Value(ini, L"M\u00E9", L"k"), L"\u00C3\u00A9");
    EXPECT_EQ(Value(ini, L"M\u00E9", L"l"), L"\u00FF");
}

TEST_F(IniFileTest, KeepsNullCharactersInNamesAndValues)
{
    const IniFile ini = Load(Bytes("[M\0]\nk\0=v\0w\nz=1\n", 16));

    EXPECT_EQ(Value(ini, std::wstring(L"M\0", 2), std::wstring(L"k\0", 2)),
              std::wstring(L"v\0w", 3));
    EXPECT_FALSE(ini.HasSection(L"M"));
}

TEST_F(IniFileTest, OpensANonAsciiPathInTheCLocale)
{
    const ScopedLocale locale("C");
    const IniFile ini(m_directory.WriteFile(L"\u6587.ini", "[M]\nk=\xE6\x96\x87\n"));

    EXPECT_EQ(Value(ini, L"M", L"k"), L"\u6587");
}

TEST_F(IniFileTest, ReadsAWholeLineOf10Megabytes)
{
    constexpr std::size_t length = 10'000'000;
    const IniFile ini = Load("[M]\nk= " + std::string(length, 'x') + " \nl=1\n");

    EXPECT_EQ(Value(ini, L"M", L"k"), std::wstring(length, L'x'));
    EXPECT_EQ(Value(ini, L"M", L"l"), L"1");
}

TEST_F(IniFileTest, ReadsAWholeFileOf100Megabytes)
{
    constexpr int sectionCount = 10'000;
    std::ofstream file(m_directory.Path() / "settings.ini", std::ios::binary);
    const std::string comment = ";" + std::string(99, '-') + "\n";
    for (int section = 0; section < sectionCount; ++section) {
        file << "[Section" << section << "]\nkey=value" << section << '\n';
        for (int line = 0; line < 99; ++line)
            file << comment;
    }
    file.close();
    ASSERT_GE(std::filesystem::file_size(m_directory.Path() / "settings.ini"), 100'000'000u);

    const IniFile ini(m_directory.File(L"settings.ini"));
    EXPECT_TRUE(ini.IsLoaded());
    EXPECT_EQ(Value(ini, L"Section0", L"key"), L"value0");
    EXPECT_EQ(Value(ini, L"Section9999", L"key"), L"value9999");
}

} // namespace
} // namespace Toolkit
