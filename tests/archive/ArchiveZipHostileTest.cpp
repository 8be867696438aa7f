#include "toolkit/archive/ArchiveZip.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wx/zipstrm.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <future>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

#include "archive/ArchiveFixture.h"
#include "archive/RawZip.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::ComputeChecksum;
using TestSupport::Deflate;
using TestSupport::PackNumber;
using TestSupport::RawEntry;
using TestSupport::RawZip;

constexpr std::uint16_t c_deflated = 8;
constexpr std::uint16_t c_encryptedFlag = 1;
constexpr std::uint16_t c_descriptorFlag = 8;
constexpr std::uint32_t c_sizeInExtraField = 0xFFFFFFFF;

class ArchiveZipHostileTest : public TestSupport::ArchiveFixture {
protected:
    // Lists `archive` and reads each entry three times: as bytes, lines and words. Returns the
    // number of bytes that the first reading yields.
    std::size_t ReadAll(const std::string& archive)
    {
        std::size_t count = 0;
        for (const std::wstring& name : ListNames(WriteBytes(archive))) {
            count += ReadBytes(name).size();
            TString<wchar_t> text;
            StreamAt(name);
            while (m_stream->ReadLine(text)) {
            }
            StreamAt(name);
            while (m_stream->IsOk())
                *m_stream >> text;
        }
        return count;
    }
};

const RawEntry c_whole{
    .name = "whole", .data = Deflate("content"), .content = "content", .method = c_deflated};

TEST_F(ArchiveZipHostileTest, ReadsStoredAndDeflatedEntries)
{
    ListNames(WriteBytes(RawZip({{.name = "stored", .data = "bytes"}, c_whole})));

    EXPECT_EQ(ReadBytes(L"stored"), "bytes");
    EXPECT_EQ(ReadBytes(L"whole"), "content");
}

TEST_F(ArchiveZipHostileTest, ReadsTheEntryAfterADamagedOne)
{
    const std::pair<const char*, RawEntry> cases[] = {
        {"checksum of stored bytes", {.name = "bad", .data = "bytes", .checksum = 1}},
        {"checksum of deflated bytes",
         {.name = "bad", .data = Deflate("x"), .content = "x", .method = 8, .checksum = 1}},
        {"invalid deflate data", {.name = "bad", .data = "\xFF\xFF\xFF\xFF", .method = 8}},
        {"method", {.name = "bad", .data = "bytes", .method = 99}},
        {"data after the end",
         {.name = "bad", .data = Deflate("x") + "junk", .content = "x", .method = 8}},
        {"data after the end, and a checksum",
         {.name = "bad", .data = Deflate("x") + "junk", .method = 8, .checksum = 1}},
        {"size", {.name = "bad", .data = "bytes", .size = 0x7FFFFFFF}},
        {"compressed size", {.name = "bad", .data = "bytes", .compressedSize = 0x7FFFFFFF}}};
    for (const auto& [what, entry] : cases) {
        SCOPED_TRACE(what);
        ListNames(WriteBytes(RawZip({entry, c_whole})));
        ReadBytes(L"bad");
        EXPECT_EQ(ReadBytes(L"whole"), "content");
        TString<wchar_t> line;
        StreamAt(L"bad").ReadLine(line);
        EXPECT_EQ(ReadBytes(L"whole"), "content");
    }
}

TEST_F(ArchiveZipHostileTest, ReportsAWrongChecksumAtTheEnd)
{
    ListNames(WriteBytes(RawZip({{.name = "bad", .data = "line\nbytes", .checksum = 1}})));
    TString<wchar_t> line;
    std::vector<unsigned char> bytes;

    EXPECT_TRUE(StreamAt(L"bad").ReadLine(line));
    EXPECT_EQ(line, L"line");
    EXPECT_TRUE(IsOk());
    *m_stream >> bytes;
    EXPECT_EQ(bytes.size(), 5u);
    EXPECT_FALSE(IsOk());
}

TEST_F(ArchiveZipHostileTest, FailsToReadAnEntryThatCannotBeOpened)
{
    for (const std::uint32_t offset : {3u, 40u, 0x7FFFFFFFu}) {
        SCOPED_TRACE(offset);
        ListNames(
            WriteBytes(RawZip({c_whole, {.name = "lost", .data = "bytes", .offset = offset}})));
        TString<wchar_t> text = L"before";

        EXPECT_EQ(ReadBytes(L"lost"), "");
        EXPECT_FALSE(IsOk());
        EXPECT_FALSE(StreamAt(L"lost").ReadLine(text));
        EXPECT_EQ(ReadBytes(L"whole"), "content");
    }
}

TEST_F(ArchiveZipHostileTest, DropsUngetBytesBeforeTheNextEntry)
{
    ListNames(WriteBytes(RawZip({{.name = "a", .data = "one"}, c_whole})));

    static_cast<wxZipInputStream*>(StreamAt(L"a"))->Ungetch("back", 4);

    EXPECT_EQ(ReadBytes(L"whole"), "content");
    // After a carriage return, wxTextInputStream reads one more character and puts it back.
    ListNames(WriteBytes(RawZip({{.name = "a", .data = "one\r\xC3\xA9"}, c_whole})));
    TString<wchar_t> line;
    EXPECT_TRUE(StreamAt(L"a").ReadLine(line));
    EXPECT_EQ(ReadBytes(L"whole"), "content");
}

TEST_F(ArchiveZipHostileTest, DoesNotAllocateTheClaimedSize)
{
    const std::string extra = PackNumber(1, 2) + PackNumber(16, 2) + PackNumber(1ull << 60, 8) +
                              PackNumber(1ull << 60, 8);
    ListNames(WriteBytes(RawZip({{.name = "huge",
                                  .data = "bytes",
                                  .compressedSize = c_sizeInExtraField,
                                  .size = c_sizeInExtraField,
                                  .extra = extra}})));

    EXPECT_EQ(m_entries[L"huge"]->GetSize(), 1ll << 60);
    EXPECT_EQ(ReadBytes(L"huge").substr(0, 5), "bytes");
    EXPECT_FALSE(IsOk());
}

TEST_F(ArchiveZipHostileTest, SurvivesAZip64FieldThatIsTooShort)
{
    for (const int size : {0, 1, 4, 8, 12, 15}) {
        SCOPED_TRACE(size);
        const std::string extra =
            PackNumber(1, 2) + PackNumber(static_cast<unsigned int>(size), 2) + PackNumber(5, size);
        ReadAll(RawZip({{.name = "short",
                         .data = "bytes",
                         .compressedSize = c_sizeInExtraField,
                         .size = c_sizeInExtraField,
                         .extra = extra},
                        c_whole}));
        EXPECT_EQ(ReadBytes(L"whole"), "content");
    }
}

TEST_F(ArchiveZipHostileTest, ReadsAnEncryptedEntryAsItIsStored)
{
    ListNames(WriteBytes(RawZip({{.name = "secret",
                                  .data = "twelve bytes"
                                          "cipher",
                                  .content = "cipher",
                                  .flags = c_encryptedFlag,
                                  .size = 18},
                                 c_whole})));

    EXPECT_NE(m_entries[L"secret"]->GetFlags() & c_encryptedFlag, 0);
    EXPECT_EQ(ReadBytes(L"secret"), "twelve bytescipher");
    EXPECT_EQ(ReadBytes(L"whole"), "content");
}

TEST_F(ArchiveZipHostileTest, SurvivesADescriptorThatContradictsTheDirectory)
{
    const std::string descriptor =
        "PK\7\10" + PackNumber(1, 4) + PackNumber(12, 4) + PackNumber(7, 4);
    ListNames(WriteBytes(RawZip({{.name = "bad",
                                  .data = Deflate("content") + descriptor,
                                  .content = "content",
                                  .method = c_deflated,
                                  .flags = c_descriptorFlag},
                                 c_whole})));

    EXPECT_EQ(ReadBytes(L"bad"), "content");
    EXPECT_EQ(ReadBytes(L"whole"), "content");
}

TEST_F(ArchiveZipHostileTest, AcceptsADescriptorThatCorrectsTheDirectory)
{
    const std::string content = "line\nrest";
    const std::string descriptor =
        "PK\7\10" + PackNumber(ComputeChecksum(content), 4) + PackNumber(14, 4) + PackNumber(9, 4);
    ListNames(WriteBytes(RawZip({{.name = "claims",
                                  .data = Deflate(content) + descriptor,
                                  .content = content,
                                  .method = c_deflated,
                                  .flags = c_descriptorFlag,
                                  .compressedSize = 14,
                                  .size = 1000}})));
    TString<wchar_t> line;
    std::vector<unsigned char> bytes;

    EXPECT_TRUE(StreamAt(L"claims").ReadLine(line));
    *m_stream >> bytes;

    EXPECT_EQ(bytes.size(), 4u);
    EXPECT_EQ(static_cast<wxZipInputStream*>(*m_stream)->GetLastError(), wxSTREAM_EOF);
}

TEST_F(ArchiveZipHostileTest, ReadsEveryTruncatedArchiveQuietly)
{
    const std::string archive = RawZip({{.name = "a", .data = "line\nand words"}, c_whole});

    testing::internal::CaptureStderr();
    for (std::size_t length = 0; length < archive.size(); ++length)
        EXPECT_LE(ReadAll(archive.substr(0, length)), archive.size()) << length;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ArchiveZipHostileTest, SurvivesEveryChangedByteQuietly)
{
    const std::string archive = RawZip({{.name = "a", .data = "line\nand words"}, c_whole});

    testing::internal::CaptureStderr();
    for (std::size_t i = 0; i < archive.size(); ++i) {
        std::string changed = archive;
        changed[i] = static_cast<char>(~changed[i]);
        EXPECT_LE(ReadAll(changed), 2 * archive.size()) << i;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ArchiveZipHostileTest, ListsUnsafeNamesAsWxWidgetsDoes)
{
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"../up", L"../up"},  {"a/../../b", L"a/../../b"}, {"a\\b", L"a\\b"},
        {"C:\\x", L"C:\\x"},  {"/absolute", L"absolute"},  {"./here", L"here"},
        {"dir/..", L"dir/.."}};
    for (const auto& [name, expected] : cases) {
        SCOPED_TRACE(name);
        EXPECT_THAT(ListNames(WriteBytes(RawZip({{.name = name, .data = "bytes"}}))),
                    ElementsAre(expected));
        EXPECT_EQ(ReadBytes(expected), "bytes");
    }
}

TEST_F(ArchiveZipHostileTest, KeepsReadingAnArchiveWhoseFileIsReplaced)
{
    ListNames(WriteBytes(RawZip({c_whole, {.name = "a", .data = std::string(100'000, 'x')}})));
    m_directory.WriteFile(L"other.zip", "This is not an archive.");

    std::filesystem::rename(m_directory.Path() / "other.zip", m_directory.Path() / "archive.zip");

    EXPECT_EQ(ReadBytes(L"a"), std::string(100'000, 'x'));
    EXPECT_EQ(ReadBytes(L"whole"), "content");
    EXPECT_THAT(ListNames(Path()), IsEmpty());
}

TEST_F(ArchiveZipHostileTest, StopsReadingWhereTheArchiveWasTruncated)
{
    ListNames(WriteBytes(RawZip({c_whole, {.name = "a", .data = std::string(100'000, 'x')}})));

    std::filesystem::resize_file(m_directory.Path() / "archive.zip", 50'000);

    EXPECT_LT(ReadBytes(L"a").size(), 50'000u);
    EXPECT_FALSE(IsOk());
    EXPECT_EQ(ReadBytes(L"whole"), "content");
}

TEST_F(ArchiveZipHostileTest, FailsToReadAnArchiveOverwrittenAfterListing)
{
    ListNames(WriteBytes(RawZip({c_whole, {.name = "a", .data = std::string(100'000, 'x')}})));

    WriteBytes(std::string(200'000, 'y'));

    EXPECT_EQ(ReadBytes(L"a"), "");
    EXPECT_FALSE(IsOk());
}

TEST_F(ArchiveZipHostileTest, DoesNotOpenDirectories)
{
    m_archive.Open(m_directory.File(L""));

    EXPECT_EQ(m_archive.EntriesList(m_entries, L"", ArchiveEntriesFlags::AllEntries), -1);
}

TEST_F(ArchiveZipHostileTest, ListsAnArchiveReadFromAPipe)
{
    const std::string path = m_directory.Path() / "pipe";
    const std::string archive =
        RawZip({{.name = "a", .data = std::string(100'000, 'x')}, {.name = "b", .data = "y"}});
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const auto writer =
        std::async(std::launch::async, [&] { std::ofstream(path, std::ios::binary) << archive; });

    EXPECT_THAT(ListNames(m_directory.File(L"pipe")), ElementsAre(L"a", L"b"));
    m_archive.Close();
}

} // namespace
} // namespace Toolkit
