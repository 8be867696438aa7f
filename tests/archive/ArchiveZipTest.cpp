#include "toolkit/archive/ArchiveZip.h"

#include "support/CapturedLog.h"
#include "support/OutOfMemory.h"
#include "support/ScopedLocale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "archive/ArchiveFixture.h"
#include "archive/ZipWriter.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::IsLogLine;
using TestSupport::ScopedLocale;
using TestSupport::WriteZip;
using TestSupport::ZipContent;

using Type = ArchiveEntriesFlags::ArchiveEntriesType;

constexpr auto c_all = ArchiveEntriesFlags::AllEntries;

class ArchiveZipTest : public TestSupport::ArchiveFixture {
protected:
    TString<wchar_t> Write(const ZipContent& content) const
    {
        WriteZip(Path(), content);
        return Path();
    }

    // Overwrites the first occurrence of `from` in the archive with `to`, which must have the same
    // length.
    void Damage(const std::string& from, const std::string& to) const
    {
        std::string bytes = m_directory.ReadFile(L"archive.zip");
        bytes.replace(bytes.find(from), to.size(), to);
        m_directory.WriteFile(L"archive.zip", bytes);
    }
};

TEST_F(ArchiveZipTest, ListsEverythingWithoutAFilter)
{
    const TString<wchar_t> path = Write({{L"b.txt", "b"}, {L"dir/", ""}, {L"dir/a.txt", "a"}});

    EXPECT_THAT(ListNames(path, L"", c_all), ElementsAre(L"b.txt", L"dir/", L"dir/a.txt"));
    EXPECT_THAT(ListNames(path, L"*.*", c_all), ElementsAre(L"b.txt", L"dir/", L"dir/a.txt"));
}

TEST_F(ArchiveZipTest, ListsOnlyFilesOrOnlyDirectories)
{
    const TString<wchar_t> path = Write({{L"b.txt", "b"}, {L"dir/", ""}, {L"dir/a.txt", "a"}});

    EXPECT_THAT(ListNames(path, L"", ArchiveEntriesFlags::FilesOnly),
                ElementsAre(L"b.txt", L"dir/a.txt"));
    EXPECT_THAT(ListNames(path, L"", ArchiveEntriesFlags::DirectoriesOnly), ElementsAre(L"dir/"));
    EXPECT_THAT(ListNames(path, L"", static_cast<Type>(3)), IsEmpty());
}

TEST_F(ArchiveZipTest, FiltersByTheBeginningOfNamesRegardlessOfCase)
{
    const TString<wchar_t> path =
        Write({{L"doc1.txt", ""}, {L"Doc2.log", ""}, {L"do", ""}, {L"other", ""}});
    constexpr std::pair<const wchar_t*, int> cases[] = {
        {L"DOC", 2},   {L"doc*", 2}, {L"doc*.txt", 2}, {L"d*c*", 0}, {L"*", 4},
        {L"*.txt", 4}, {L"do", 3},   {L"doc1.txt", 1}, {L"x", 0}};
    for (const auto& [filter, expected] : cases)
        EXPECT_EQ(static_cast<int>(ListNames(path, filter, c_all).size()), expected)
            << testing::PrintToString(filter);
}

TEST_F(ArchiveZipTest, KeepsTheFirstEntryOfARepeatedName)
{
    const TString<wchar_t> path = Write({{L"a", "first"}, {L"a", "second"}});

    EXPECT_THAT(ListNames(path, L"", c_all), ElementsAre(L"a"));
    EXPECT_EQ(ReadBytes(L"a"), "first");
}

TEST_F(ArchiveZipTest, ReportsTheSizeAndKindOfEachEntry)
{
    ListNames(Write({{L"a", "four"}, {L"dir/", ""}}), L"", c_all);

    EXPECT_EQ(m_entries[L"a"]->GetSize(), 4);
    EXPECT_FALSE(m_entries[L"a"]->IsDir());
    EXPECT_TRUE(m_entries[L"dir/"]->IsDir());
}

TEST_F(ArchiveZipTest, ReadsEntriesInAnyOrder)
{
    ListNames(Write({{L"a", "one"}, {L"b", std::string(200'000, 'x')}, {L"c", ""}}), L"", c_all);

    EXPECT_EQ(ReadBytes(L"c"), "");
    EXPECT_EQ(ReadBytes(L"b"), std::string(200'000, 'x'));
    EXPECT_EQ(ReadBytes(L"a"), "one");
    EXPECT_EQ(ReadBytes(L"b"), std::string(200'000, 'x'));
}

TEST_F(ArchiveZipTest, AppendsEntryBytesToTheVector)
{
    ListNames(Write({{L"a", "one"}}), L"", c_all);
    std::vector<unsigned char> bytes{'0'};

    *m_archive.GetZipInputStream(m_entries[L"a"]) >> bytes;

    EXPECT_EQ(bytes, (std::vector<unsigned char>{'0', 'o', 'n', 'e'}));
}

TEST_F(ArchiveZipTest, LogsTheUseOfAClosedArchive)
{
    m_entries[L"old"] = smart_ptr<ArchiveZipEntry>();

    EXPECT_EQ(m_archive.EntriesList(m_entries, L"", c_all), -1);
    EXPECT_THAT(m_entries, IsEmpty());
    EXPECT_THAT(m_log.Lines(), ElementsAre(IsLogLine(SeverityError, 103, L"EntriesList",
                                                     L"  archive is not valid! ")));
}

TEST_F(ArchiveZipTest, LogsAMissingFile)
{
    m_archive.Open(m_directory.File(L"missing.zip"));

    EXPECT_EQ(m_archive.EntriesList(m_entries, L"", c_all), -1);
    EXPECT_THAT(m_log.Lines(), ElementsAre(IsLogLine(SeverityError, 103, L"EntriesList",
                                                     L"  archive is not valid! ")));
    EXPECT_TRUE(m_archive.GetZipInputStream(smart_ptr<ArchiveZipEntry>()).IsValid());
}

TEST_F(ArchiveZipTest, ListsAFileThatIsNotAnArchiveAsEmptyOnce)
{
    m_archive.Open(m_directory.WriteFile(L"text.zip", "This is not an archive."));

    EXPECT_EQ(m_archive.EntriesList(m_entries, L"", c_all), 0);
    EXPECT_EQ(m_archive.EntriesList(m_entries, L"", c_all), -1);
}

TEST_F(ArchiveZipTest, CanFilterByAKeyOfTheMap)
{
    const TString<wchar_t> path = Write({{L"a name too long for a short string", ""}, {L"b", ""}});
    ListNames(path, L"", c_all);
    m_archive.Open(path);

    EXPECT_EQ(m_archive.EntriesList(m_entries, m_entries.begin()->first, c_all), 1);
    EXPECT_EQ(m_entries.count(L"a name too long for a short string"), 1u);
}

TEST_F(ArchiveZipTest, CanBeListedAgainOnlyAfterReopening)
{
    const TString<wchar_t> path = Write({{L"a", "one"}});
    EXPECT_THAT(ListNames(path, L"", c_all), ElementsAre(L"a"));

    EXPECT_EQ(m_archive.EntriesList(m_entries, L"", c_all), -1);
    EXPECT_THAT(m_log.Lines(), ElementsAre(IsLogLine(SeverityError, 103, L"EntriesList",
                                                     L"  archive is not valid! ")));
    EXPECT_THAT(ListNames(path, L"", c_all), ElementsAre(L"a"));
}

TEST_F(ArchiveZipTest, KeepsStreamsUsableAfterClose)
{
    ListNames(Write({{L"a", "one"}}), L"", c_all);
    const smart_ptr<ZipInputStream> stream = m_archive.GetZipInputStream(m_entries[L"a"]);

    m_archive.Close();

    std::vector<unsigned char> bytes;
    *stream >> bytes;
    EXPECT_EQ(bytes.size(), 3u);
}

TEST_F(ArchiveZipTest, SharesOneStreamAmongAllEntries)
{
    ListNames(Write({{L"a", "one"}, {L"b", "two"}}));
    const smart_ptr<ZipInputStream> first = m_archive.GetZipInputStream(m_entries[L"a"]);
    const smart_ptr<ZipInputStream> second = m_archive.GetZipInputStream(m_entries[L"b"]);
    std::vector<unsigned char> bytes;

    *first >> bytes;

    EXPECT_EQ(first.Get(), second.Get());
    EXPECT_EQ(bytes, (std::vector<unsigned char>{'t', 'w', 'o'}));
}

TEST_F(ArchiveZipTest, LeavesTheStreamWhereItIsWithoutAnEntry)
{
    ListNames(Write({{L"a", "one two "}}));
    TString<wchar_t> word;
    StreamAt(L"a") >> word;

    *m_archive.GetZipInputStream(smart_ptr<ArchiveZipEntry>()) >> word;

    EXPECT_EQ(word, L"two");
}

TEST_F(ArchiveZipTest, OpensAnotherArchiveInsteadOfTheFirst)
{
    ListNames(Write({{L"a", "one"}}));
    const smart_ptr<ZipInputStream> first = m_archive.GetZipInputStream(m_entries[L"a"]);
    WriteZip(m_directory.File(L"other.zip"), {{L"b", "two"}});

    EXPECT_THAT(ListNames(m_directory.File(L"other.zip")), ElementsAre(L"b"));

    TString<wchar_t> word;
    *first >> word;
    EXPECT_EQ(word, L"one");
    EXPECT_EQ(ReadBytes(L"b"), "two");
}

TEST_F(ArchiveZipTest, HasFixedFlagValuesAndBaseClasses)
{
    static_assert(ArchiveEntriesFlags::AllEntries == 0);
    static_assert(ArchiveEntriesFlags::FilesOnly == 1);
    static_assert(ArchiveEntriesFlags::DirectoriesOnly == 2);
    static_assert(std::has_virtual_destructor_v<ArchiveZip>);
    static_assert(std::is_base_of_v<wxZipEntry, ArchiveZipEntry>);
    static_assert(std::is_base_of_v<InputStream, ZipInputStream>);
}

TEST_F(ArchiveZipTest, HasNoStreamWhenClosed)
{
    ListNames(Write({{L"a", "one"}}), L"", c_all);
    m_archive.Close();

    EXPECT_FALSE(m_archive.GetZipInputStream(m_entries[L"a"]).IsValid());
}

TEST_F(ArchiveZipTest, ReadsTheEntryAfterADamagedOne)
{
    Write({{L"a", "some text that is stored"}, {L"b", "whole"}});
    std::string bytes = m_directory.ReadFile(L"archive.zip");
    // The first byte of the entry's data, after its header of 30 bytes and its name.
    bytes[31] = static_cast<char>(~bytes[31]);
    m_directory.WriteFile(L"archive.zip", bytes);
    ListNames(m_directory.File(L"archive.zip"), L"", c_all);

    ReadBytes(L"a");
    EXPECT_FALSE(IsOk());
    EXPECT_EQ(ReadBytes(L"b"), "whole");
}

TEST_F(ArchiveZipTest, FindsAnArchiveAfterAPrefix)
{
    Write({{L"a", "one"}});
    const std::string bytes = m_directory.ReadFile(L"archive.zip");
    m_directory.WriteFile(L"archive.zip", "#!/bin/sh\nexit\n" + bytes);

    EXPECT_THAT(ListNames(m_directory.File(L"archive.zip"), L"", c_all), ElementsAre(L"a"));
    EXPECT_EQ(ReadBytes(L"a"), "one");
}

TEST_F(ArchiveZipTest, SurvivesATruncatedArchive)
{
    Write({{L"a", std::string(100'000, 'x')}, {L"b", "two"}});
    const std::string bytes = m_directory.ReadFile(L"archive.zip");
    for (const std::size_t length : {0u, 10u, 30u, 60u, 100u, 150u}) {
        m_directory.WriteFile(L"short.zip", bytes.substr(0, length));
        m_archive.Open(m_directory.File(L"short.zip"));
        m_archive.EntriesList(m_entries, L"", c_all);
        for (const auto& entry : m_entries) {
            std::vector<unsigned char> content;
            *m_archive.GetZipInputStream(entry.second) >> content;
            EXPECT_LE(content.size(), 100'000u);
        }
    }
}

TEST_F(ArchiveZipTest, ListsUnusualNamesUnchanged)
{
    const TString<wchar_t> path = Write({{L"../up", ""}, {L"a\\b", ""}, {L"\u00E9\u6F22", ""}});
    for (const char* const name : {"C", "C.UTF-8"}) {
        const ScopedLocale locale(name);
        EXPECT_THAT(ListNames(path, L"", c_all),
                    testing::UnorderedElementsAre(L"../up", L"\u00E9\u6F22", L"a\\b"))
            << name;
    }
}

TEST_F(ArchiveZipTest, ListsAnAbsoluteNameWithoutItsSlash)
{
    EXPECT_THAT(ListNames(Write({{L"/absolute", ""}}), L"", c_all), ElementsAre(L"absolute"));
}

TEST_F(ArchiveZipTest, DecodesNamesWithInvalidUtf8AsLatin1)
{
    Write({{L"aa", "first"}, {L"bb", "second"}});
    // A name occurs twice: in the entry's header and in the directory.
    Damage("aa", "\xE9\xE9");
    Damage("aa", "\xE9\xE9");
    Damage("bb", "\xE8\xE8");
    Damage("bb", "\xE8\xE8");
    const ScopedLocale locale("C.UTF-8");

    EXPECT_THAT(ListNames(m_directory.File(L"archive.zip"), L"", c_all),
                ElementsAre(L"\u00E8\u00E8", L"\u00E9\u00E9"));
    EXPECT_EQ(ReadBytes(L"\u00E9\u00E9"), "first");
}

TEST_F(ArchiveZipTest, OpensANonAsciiPathInTheCLocale)
{
    const ScopedLocale locale("C");
    Write({{L"a", "one"}});
    std::filesystem::copy_file(m_directory.Path() / "archive.zip",
                               m_directory.Path() / "\xC3\xA9.zip");

    EXPECT_THAT(ListNames(m_directory.File(L"\u00E9.zip"), L"", c_all), ElementsAre(L"a"));
}

TEST_F(ArchiveZipTest, ListsManyEntries)
{
    ZipContent content;
    for (int i = 0; i < 10'000; ++i)
        content.emplace_back(std::to_wstring(i), "x");

    EXPECT_EQ(ListNames(Write(content), L"", c_all).size(), 10'000u);
}

TEST_F(ArchiveZipTest, ListsNoEntriesWhenOutOfMemory)
{
    const TString<wchar_t> path = Write({{L"a", "one"}, {std::wstring(60'000, L'b'), "two"}});
    m_archive.Open(path);
    int count = 0;
    {
        const TestSupport::AllocationLimit limit(100'000);
        count = m_archive.EntriesList(m_entries, L"", ArchiveEntriesFlags::AllEntries);
    }

    EXPECT_EQ(count, -1);
    EXPECT_THAT(m_entries, IsEmpty());
    EXPECT_EQ(ListNames(path).size(), 2u);
}

TEST_F(ArchiveZipTest, PrintsNothingToStandardError)
{
    testing::internal::CaptureStderr();
    Write({{L"a", std::string(1000, 'x')}});
    const std::string bytes = m_directory.ReadFile(L"archive.zip");
    m_directory.WriteFile(L"archive.zip", bytes.substr(0, bytes.size() - 30));
    ListNames(m_directory.File(L"archive.zip"), L"", c_all);
    m_archive.Open(m_directory.File(L"missing.zip"));
    m_archive.Open(m_directory.File(L""));

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace Toolkit
