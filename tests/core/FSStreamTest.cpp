#include "toolkit/core/FSStream.h"

#include "toolkit/core/StreamResult.h"

#include "support/FileSizeLimit.h"
#include "support/OutOfMemory.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/file.h>
#include <wx/log.h>

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using TestSupport::FileSizeLimit;
using TestSupport::TempDir;
using Wide = TString<wchar_t>;

// Returns the bytes of `value` in native byte order, as a file stores them.
std::string Packed(unsigned int value)
{
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

std::string Packed(const std::wstring& text)
{
    std::string bytes;
    for (const wchar_t character : text)
        bytes += Packed(static_cast<unsigned int>(character));
    return bytes;
}

class FSStreamTest : public testing::Test {
protected:
    // Returns a stream that reads `bytes`.
    FSStream OpenReader(const std::string& bytes) const
    {
        return FSStream(m_directory.WriteFile(L"read", bytes), FSStream::OpenRead);
    }

    // Returns a stream that writes the file that Written() reads.
    FSStream OpenWriter() const
    {
        return FSStream(m_directory.File(L"written"), FSStream::OpenWrite);
    }
    std::string Written() const { return m_directory.ReadFile(L"written"); }

    TempDir m_directory;
};

TEST_F(FSStreamTest, WritesAnIntegerInNativeByteOrder)
{
    FSStream stream = OpenWriter();

    EXPECT_EQ(stream.Write(0x01020304u), StreamResult::Ok);
    EXPECT_EQ(Written(), Packed(0x01020304u));
}

TEST_F(FSStreamTest, WritesABlockAndNothingElse)
{
    FSStream stream = OpenWriter();

    EXPECT_EQ(stream.Write("a\0b", 3u), StreamResult::Ok);
    EXPECT_EQ(Written(), std::string("a\0b", 3));
}

TEST_F(FSStreamTest, WritesTheSizeInBytesBeforeAString)
{
    FSStream stream = OpenWriter();

    EXPECT_EQ(stream.Write(Wide(L"ab")), StreamResult::Ok);
    EXPECT_EQ(Written(), Packed(8u) + Packed(0x61u) + Packed(0x62u));
}

TEST_F(FSStreamTest, WritesAllCharactersOfAStringWithANull)
{
    FSStream stream = OpenWriter();

    EXPECT_EQ(stream.Write(Wide(std::wstring(L"a\0b", 3))), StreamResult::Ok);
    EXPECT_EQ(Written(), Packed(12u) + Packed(0x61u) + Packed(0u) + Packed(0x62u));
}

TEST_F(FSStreamTest, WritesAnEmptyStringAsASizeOfZero)
{
    FSStream stream = OpenWriter();

    EXPECT_EQ(stream.Write(Wide()), 0x01000000u);
    EXPECT_EQ(Written(), Packed(0u));
}

TEST_F(FSStreamTest, WritesNothingForAnEmptyBlock)
{
    FSStream stream = OpenWriter();

    EXPECT_EQ(stream.Write(nullptr, 0), 0u);
    EXPECT_EQ(Written(), "");
}

TEST_F(FSStreamTest, WritesToTheFileBeforeItReturns)
{
    FSStream stream = OpenWriter();

    for (unsigned int count = 1; count <= 3; ++count) {
        ASSERT_EQ(stream.Write(count), StreamResult::Ok);
        EXPECT_EQ(Written().size(), count * 4);
    }
}

TEST_F(FSStreamTest, ReadsItemsInFileOrder)
{
    FSStream stream = OpenReader(Packed(7u) + "xyz" + Packed(8u) + Packed(L"hé"));
    unsigned int value = 0;
    std::string block(3, '\0');
    Wide text;

    EXPECT_EQ(stream.Read(value), StreamResult::Ok);
    EXPECT_EQ(stream.Read(block.data(), 3), StreamResult::Ok);
    EXPECT_EQ(stream.Read(text), StreamResult::Ok);

    EXPECT_EQ(value, 7u);
    EXPECT_EQ(block, "xyz");
    EXPECT_EQ(text, L"hé");
}

TEST_F(FSStreamTest, LeavesTheStringUnchangedForASizeOfZero)
{
    FSStream stream = OpenReader(Packed(0u));
    Wide text = L"before";

    EXPECT_EQ(stream.Read(text), 0x01000000u);
    EXPECT_EQ(text, L"before");
}

TEST_F(FSStreamTest, EndsAStringAtItsFirstNullAndSkipsTheCharactersAfterIt)
{
    FSStream stream = OpenReader(Packed(12u) + Packed(std::wstring(L"a\0b", 3)) + Packed(9u));
    Wide text;
    unsigned int next = 0;

    EXPECT_EQ(stream.Read(text), StreamResult::Ok);
    EXPECT_EQ(text, L"a");
    EXPECT_EQ(stream.Read(next), StreamResult::Ok);
    EXPECT_EQ(next, 9u);
}

TEST_F(FSStreamTest, DropsAnIncompleteLastCharacter)
{
    const std::pair<unsigned int, std::wstring> cases[] = {
        {1, L""}, {3, L""}, {4, L"a"}, {5, L"a"}, {7, L"a"}, {8, L"ab"}, {11, L"ab"}};
    for (const auto& [size, expected] : cases) {
        SCOPED_TRACE(size);
        FSStream stream = OpenReader(Packed(size) + Packed(L"abc").substr(0, size) + Packed(5u));
        Wide text = L"before";
        unsigned int next = 0;

        EXPECT_EQ(stream.Read(text), StreamResult::Ok);
        EXPECT_EQ(text, expected);
        EXPECT_EQ(stream.Read(next), StreamResult::Ok);
        EXPECT_EQ(next, 5u);
    }
}

TEST_F(FSStreamTest, ReadsBackStringsOfManyLengths)
{
    for (const std::size_t length : {1u, 4095u, 4096u, 4097u, 8192u, 100000u}) {
        SCOPED_TRACE(length);
        std::wstring expected(length, L'x');
        expected.back() = L'\U0010FFFF';
        FSStream writer = OpenWriter();
        ASSERT_EQ(writer.Write(Wide(expected)), StreamResult::Ok);
        FSStream reader(m_directory.File(L"written"), FSStream::OpenRead);
        Wide text;

        EXPECT_EQ(reader.Read(text), StreamResult::Ok);
        EXPECT_EQ(text, expected);
    }
}

TEST_F(FSStreamTest, LeavesTheTargetUnchangedForATruncatedString)
{
    for (const unsigned int size : {5u, 8u, 0x10000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        SCOPED_TRACE(size);
        FSStream stream = OpenReader(Packed(size) + Packed(L"a"));
        Wide text = L"before";

        EXPECT_EQ(stream.Read(text), 0x10000003u);
        EXPECT_EQ(text, L"before");
    }
}

TEST_F(FSStreamTest, LeavesTheTargetUnchangedWhenOutOfMemory)
{
    FSStream stream = OpenReader(Packed(400000u) + std::string(400000, 'x'));
    Wide text = L"before";
    {
        const TestSupport::AllocationLimit limit(200000);
        EXPECT_EQ(stream.Read(text), 0x10000003u);
    }
    EXPECT_EQ(text, L"before");
}

TEST_F(FSStreamTest, ReadsItemsOfManySizesAroundTheReadAheadSize)
{
    constexpr unsigned int readAheadSize = 65536;
    const std::string bytes(4 * readAheadSize, 'x');
    for (const unsigned int first : {1u, readAheadSize - 2, readAheadSize, readAheadSize + 1}) {
        for (const unsigned int second :
             {2u, readAheadSize - 1, readAheadSize, 2 * readAheadSize - 1}) {
            SCOPED_TRACE(testing::PrintToString(std::pair(first, second)));
            FSStream stream = OpenReader(bytes.substr(0, first) + Packed(7u) +
                                         bytes.substr(0, second) + Packed(8u));
            std::string block(2 * readAheadSize, '-');
            unsigned int values[] = {0, 0};

            EXPECT_EQ(stream.Read(block.data(), first), StreamResult::Ok);
            EXPECT_EQ(stream.Read(values[0]), StreamResult::Ok);
            EXPECT_EQ(stream.Read(block.data(), second), StreamResult::Ok);
            EXPECT_EQ(stream.Read(values[1]), StreamResult::Ok);
            EXPECT_EQ(values[0], 7u);
            EXPECT_EQ(values[1], 8u);
            EXPECT_EQ(stream.Read(block.data(), 1), StreamResult::DataFailed);
        }
    }
}

TEST_F(FSStreamTest, ReadsDataAppendedAfterTheEndWasReached)
{
    FSStream reader = OpenReader(Packed(1u));
    unsigned int value = 0;
    EXPECT_EQ(reader.Read(value), StreamResult::Ok);
    EXPECT_EQ(reader.Read(value), StreamResult::DataFailed);

    std::ofstream(m_directory.Path() / "read", std::ios::app | std::ios::binary) << Packed(2u);

    EXPECT_EQ(reader.Length(), 8u);
    EXPECT_EQ(reader.Read(value), StreamResult::Ok);
    EXPECT_EQ(value, 2u);
}

TEST_F(FSStreamTest, ConsumesTheRemainingBytesWhenAReadFails)
{
    FSStream reader = OpenReader("abc");
    char block[8] = "-------";
    EXPECT_EQ(reader.Read(block, 7), StreamResult::DataFailed);
    EXPECT_STREQ(block, "abc----");

    std::ofstream(m_directory.Path() / "read", std::ios::app | std::ios::binary) << "d";

    EXPECT_EQ(reader.Read(block, 1), StreamResult::Ok);
    EXPECT_EQ(block[0], 'd');
}

TEST_F(FSStreamTest, DoesNotReadAheadInAPipe)
{
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    ASSERT_EQ(::write(ends[1], "abcdefgh", 8), 8);
    FSStream reader(L"/dev/fd/" + std::to_wstring(ends[0]), FSStream::OpenRead);
    unsigned int value = 0;
    char rest[5] = "";

    EXPECT_EQ(reader.Read(value), StreamResult::Ok);
    EXPECT_EQ(::read(ends[0], rest, 4), 4);
    EXPECT_STREQ(rest, "efgh");
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_F(FSStreamTest, ReadsWithoutReadingAheadWhenOutOfMemory)
{
    FSStream stream = OpenReader(Packed(7u) + Packed(4u) + Packed(L"a"));
    unsigned int value = 0;
    Wide text;
    const TestSupport::AllocationLimit limit(1000);

    EXPECT_EQ(stream.Read(value), StreamResult::Ok);
    EXPECT_EQ(stream.Read(text), StreamResult::Ok);
    EXPECT_EQ(value, 7u);
    EXPECT_EQ(text, L"a");
}

TEST_F(FSStreamTest, ReturnsReadPrefixFailedForAMissingSize)
{
    for (const char* bytes : {"", "a", "abc"}) {
        SCOPED_TRACE(bytes);
        FSStream stream = OpenReader(bytes);
        Wide text = L"before";

        EXPECT_EQ(stream.Read(text), 0x10000006u);
        EXPECT_EQ(text, L"before");
    }
}

TEST_F(FSStreamTest, FailsForATruncatedIntegerOrBlock)
{
    unsigned int value = 0;
    char block[4] = "---";

    EXPECT_EQ(OpenReader("abc").Read(value), 0x10000003u);
    EXPECT_EQ(OpenReader("ab").Read(block, 3), 0x10000003u);
    EXPECT_STREQ(block, "ab-");
}

TEST_F(FSStreamTest, RejectsNullDataUnlessTheSizeIsZero)
{
    FSStream writer = OpenWriter();
    FSStream reader = OpenReader("abc");

    EXPECT_EQ(writer.Write(nullptr, 1), 0x10000003u);
    EXPECT_EQ(reader.Read(nullptr, 1), 0x10000003u);
    EXPECT_EQ(reader.Read(nullptr, 0), 0u);
}

TEST_F(FSStreamTest, ReportsAMissingFileFromEveryOperation)
{
    FSStream stream(m_directory.File(L"missing"), FSStream::OpenRead);
    Wide text = L"before";
    unsigned int value = 5;
    char block = 'b';

    EXPECT_EQ(stream.Write(Wide()), 0x10000002u);
    EXPECT_EQ(stream.Write(Wide(L"a")), 0x10000002u);
    EXPECT_EQ(stream.Write(1u), 0x10000002u);
    EXPECT_EQ(stream.Write(nullptr, 1), 0x10000002u);
    EXPECT_EQ(stream.Read(text), 0x10000002u);
    EXPECT_EQ(stream.Read(value), 0x10000002u);
    EXPECT_EQ(stream.Read(&block, 1), 0x10000002u);
    EXPECT_EQ(stream.Length(), 0u);
    EXPECT_EQ(text, L"before");
    EXPECT_EQ(value, 5u);
}

TEST_F(FSStreamTest, DoesNotOpenDirectoriesOrAnEmptyPath)
{
    for (const Wide& path : {Wide(), m_directory.File(L"")}) {
        FSStream reader(path, FSStream::OpenRead);
        FSStream writer(path, FSStream::OpenWrite);
        unsigned int value = 0;
        EXPECT_EQ(reader.Read(value), StreamResult::NotOpen);
        EXPECT_EQ(writer.Write(value), StreamResult::NotOpen);
    }
}

TEST_F(FSStreamTest, PassesItemsThroughAPipeOneByOne)
{
    const Wide path = m_directory.File(L"pipe");
    ASSERT_EQ(::mkfifo((m_directory.Path() / "pipe").c_str(), 0600), 0);
    std::promise<void> wasRead;
    const auto writer = std::async(std::launch::async, [&] {
        FSStream stream(path, FSStream::OpenWrite);
        EXPECT_EQ(stream.Write(7u), StreamResult::Ok);
        wasRead.get_future().wait();
        EXPECT_EQ(stream.Write(Wide(L"ab")), StreamResult::Ok);
    });
    FSStream stream(path, FSStream::OpenRead);
    unsigned int value = 0;
    Wide text;

    EXPECT_EQ(stream.Read(value), StreamResult::Ok);
    wasRead.set_value();
    EXPECT_EQ(stream.Read(text), StreamResult::Ok);
    EXPECT_EQ(value, 7u);
    EXPECT_EQ(text, L"ab");
    EXPECT_EQ(stream.Length(), 0u);
}

TEST_F(FSStreamTest, OpensDescriptorsThroughDevFd)
{
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    FSStream writer(L"/dev/fd/" + std::to_wstring(ends[1]), FSStream::OpenWrite);
    FSStream reader(L"/dev/fd/" + std::to_wstring(ends[0]), FSStream::OpenRead);
    unsigned int value = 0;

    EXPECT_EQ(writer.Write(7u), StreamResult::Ok);
    EXPECT_EQ(reader.Read(value), StreamResult::Ok);
    EXPECT_EQ(value, 7u);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_F(FSStreamTest, AcceptsTheModesOfWxFile)
{
    const Wide path = m_directory.WriteFile(L"file", "old");
    const auto mode = [](wxFile::OpenMode value) { return static_cast<FSStream::OpenMode>(value); };

    EXPECT_EQ(FSStream(path, mode(wxFile::write_append)).Write("+", 1), StreamResult::Ok);
    EXPECT_EQ(FSStream(path, mode(wxFile::read_write)).Write("n", 1), StreamResult::Ok);
    EXPECT_EQ(FSStream(path, mode(wxFile::write_excl)).Write("x", 1), StreamResult::NotOpen);
    EXPECT_EQ(m_directory.ReadFile(L"file"), "nld+");
}

TEST_F(FSStreamTest, IsNotOpenWhenOutOfMemory)
{
    const Wide path = m_directory.WriteFile(L"read", "abcd");
    const TestSupport::AllocationLimit limit(0);
    FSStream stream(path, FSStream::OpenRead);
    unsigned int value = 0;

    EXPECT_EQ(stream.Read(value), StreamResult::NotOpen);
    EXPECT_EQ(stream.Length(), 0u);
}

TEST_F(FSStreamTest, TruncatesAnExistingFileForWriting)
{
    m_directory.WriteFile(L"written", "old contents");
    FSStream stream = OpenWriter();

    EXPECT_EQ(stream.Length(), 0u);
    EXPECT_EQ(stream.Write("new", 3), StreamResult::Ok);
    EXPECT_EQ(Written(), "new");
}

TEST_F(FSStreamTest, RejectsOperationsThatTheModeDoesNotAllow)
{
    FSStream writer = OpenWriter();
    FSStream reader = OpenReader("abcd");
    unsigned int value = 0;

    EXPECT_EQ(writer.Read(value), 0x10000003u);
    EXPECT_EQ(reader.Write(1u), 0x10000000u);
    EXPECT_EQ(reader.Write("a", 1), 0x10000003u);
    EXPECT_EQ(reader.Write(Wide(L"a")), 0x10000005u);
}

TEST_F(FSStreamTest, ReturnsACodePerItemTypeForAFullDevice)
{
    FSStream stream(L"/dev/full", FSStream::OpenWrite);

    EXPECT_EQ(stream.Write(1u), 0x10000000u);
    EXPECT_EQ(stream.Write("a", 1), 0x10000003u);
    EXPECT_EQ(stream.Write(Wide(L"a")), 0x10000005u);
    EXPECT_EQ(stream.Write(Wide()), 0x10000005u);
}

TEST_F(FSStreamTest, FailsWhenOnlyPartOfAWriteFits)
{
    FSStream stream = OpenWriter();
    const FileSizeLimit limit(10);

    EXPECT_EQ(stream.Write(Wide(L"ab")), 0x10000003u);
    EXPECT_EQ(stream.Write(1u), 0x10000000u);
    EXPECT_EQ(Written(), (Packed(8u) + Packed(L"ab")).substr(0, 10));
}

TEST_F(FSStreamTest, ReturnsTheLengthOfTheWholeFile)
{
    FSStream reader = OpenReader("12345678");
    unsigned int value = 0;
    FSStream writer = OpenWriter();

    EXPECT_EQ(reader.Length(), 8u);
    ASSERT_EQ(reader.Read(value), StreamResult::Ok);
    EXPECT_EQ(reader.Length(), 8u);
    ASSERT_EQ(writer.Write(Wide(L"ab")), StreamResult::Ok);
    EXPECT_EQ(writer.Length(), 12u);
}

TEST_F(FSStreamTest, ReturnsTheLow32BitsOfTheLength)
{
    const Wide path = m_directory.WriteFile(L"sparse", "");
    std::filesystem::resize_file(m_directory.Path() / "sparse", 0x100000005);

    EXPECT_EQ(FSStream(path, FSStream::OpenRead).Length(), 5u);
}

TEST_F(FSStreamTest, EncodesFileNamesInUtf8)
{
    FSStream(m_directory.File(L"h\u00e9\U0001F600"), FSStream::OpenWrite).Write("x", 1);

    EXPECT_TRUE(std::filesystem::exists(m_directory.Path() / "h\xC3\xA9\xF0\x9F\x98\x80"));
}

TEST_F(FSStreamTest, AppliesTheUmaskToNewFiles)
{
    const mode_t oldMask = ::umask(0);
    FSStream(m_directory.File(L"open"), FSStream::OpenWrite);
    ::umask(027);
    FSStream(m_directory.File(L"closed"), FSStream::OpenWrite);
    ::umask(oldMask);

    const auto permissions = [this](const char* name) {
        return std::filesystem::status(m_directory.Path() / name).permissions();
    };
    EXPECT_EQ(permissions("open"), std::filesystem::perms(0666));
    EXPECT_EQ(permissions("closed"), std::filesystem::perms(0640));
}

// Counts the messages that wxWidgets logs on this thread.
class CountingLog : public wxLog {
public:
    CountingLog() : m_old(wxLog::SetActiveTarget(this)) {}
    ~CountingLog() override { wxLog::SetActiveTarget(m_old); }

    int count = 0;

protected:
    void DoLogRecord(wxLogLevel, const wxString&, const wxLogRecordInfo&) override { ++count; }

private:
    wxLog* m_old;
};

TEST_F(FSStreamTest, DoesNotLogFailures)
{
    CountingLog log;
    {
        FSStream missing(m_directory.File(L"no/such/directory"), FSStream::OpenWrite);
        FSStream directory(m_directory.File(L""), FSStream::OpenRead);
        FSStream full(L"/dev/full", FSStream::OpenWrite);
        Wide text;

        EXPECT_TRUE(StreamResult::Failed(missing.Write(1u)));
        EXPECT_TRUE(StreamResult::Failed(directory.Read(text)));
        EXPECT_TRUE(StreamResult::Failed(full.Write(1u)));
        EXPECT_TRUE(StreamResult::Failed(OpenReader("").Read(text)));
    }
    EXPECT_EQ(log.count, 0);
}

// Records integers instead of writing them, and reads every integer as `size`. FSStream uses these
// calls for the sizes of strings.
class SizeStream : public FSStream {
public:
    using FSStream::FSStream;
    using FSStream::Read;
    using FSStream::Write;

    unsigned int Write(unsigned int value) override
    {
        sizes.push_back(value);
        return result;
    }

    unsigned int Read(unsigned int& value) override
    {
        value = size;
        return result;
    }

    std::vector<unsigned int> sizes;
    unsigned int size = 0;
    unsigned int result = StreamResult::Ok;
};

TEST_F(FSStreamTest, CallsADerivedWriteForTheSizeOfAString)
{
    SizeStream stream(m_directory.File(L"written"), FSStream::OpenWrite);

    EXPECT_EQ(stream.Write(Wide(L"ab")), StreamResult::Ok);
    EXPECT_EQ(stream.Write(Wide()), StreamResult::Nothing);
    EXPECT_EQ(stream.sizes, (std::vector<unsigned int>{8, 0}));
    EXPECT_EQ(Written(), Packed(L"ab"));
}

TEST_F(FSStreamTest, CallsADerivedReadForTheSizeOfAString)
{
    SizeStream stream(m_directory.WriteFile(L"read", Packed(L"abc")), FSStream::OpenRead);
    stream.size = 8;
    Wide text;

    EXPECT_EQ(stream.Read(text), StreamResult::Ok);
    EXPECT_EQ(text, L"ab");
}

// Counts the calls that write or read a block.
class BlockStream : public FSStream {
public:
    using FSStream::FSStream;
    using FSStream::Read;
    using FSStream::Write;

    unsigned int Write(const void* data, unsigned int size) override
    {
        ++count;
        return FSStream::Write(data, size);
    }

    unsigned int Read(void* data, unsigned int size) override
    {
        ++count;
        return FSStream::Read(data, size);
    }

    int count = 0;
};

TEST_F(FSStreamTest, DoesNotUseDerivedBlockCallsForIntegersAndStrings)
{
    BlockStream writer(m_directory.File(L"written"), FSStream::OpenWrite);
    EXPECT_EQ(writer.Write(7u), StreamResult::Ok);
    EXPECT_EQ(writer.Write(Wide(L"ab")), StreamResult::Ok);
    BlockStream reader(m_directory.File(L"written"), FSStream::OpenRead);
    unsigned int value = 0;
    Wide text;
    EXPECT_EQ(reader.Read(value), StreamResult::Ok);
    EXPECT_EQ(reader.Read(text), StreamResult::Ok);

    EXPECT_EQ(writer.count, 0);
    EXPECT_EQ(reader.count, 0);
}

TEST_F(FSStreamTest, TurnsTheFailureBitOfADerivedStreamIntoThePrefixCode)
{
    const std::pair<unsigned int, bool> cases[] = {
        {0x01000000, false}, {0x10000000, true}, {0x1FFFFFFF, true}, {0xEFFFFFFF, false}};
    for (const auto& [result, failed] : cases) {
        SCOPED_TRACE(result);
        SizeStream writer(m_directory.File(L"written"), FSStream::OpenWrite);
        SizeStream reader(m_directory.WriteFile(L"read", "abcd"), FSStream::OpenRead);
        writer.result = reader.result = result;
        reader.size = 4;
        Wide text;

        EXPECT_EQ(writer.Write(Wide(L"a")), failed ? 0x10000005u : 0u);
        EXPECT_EQ(reader.Read(text), failed ? 0x10000006u : 0u);
    }
}

} // namespace
} // namespace Toolkit
