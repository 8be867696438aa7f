#include "toolkit/files/FFile.h"

#include "support/CapturedLog.h"
#include "support/FileSizeLimit.h"
#include "support/OutOfMemory.h"
#include "support/RunProgram.h"
#include "support/ScopedLocale.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <future>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Toolkit {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using TestSupport::AllocationLimit;
using TestSupport::CapturedLog;
using TestSupport::FileSizeLimit;
using TestSupport::RunProgram;
using TestSupport::ScopedLocale;
using TestSupport::TempDir;

class FFileTest : public testing::Test {
protected:
    // Writes a file with the ten digits and returns its path.
    TString<wchar_t> WriteDigits() const { return m_directory.WriteFile(L"digits", "0123456789"); }

    // Writes `text` to a file and returns the file's bytes.
    std::string WriteAndReadBack(const TString<wchar_t>& text) const
    {
        FFile file;
        EXPECT_TRUE(file.Open(m_directory.File(L"written"), L"wb"));
        file.Write(text);
        EXPECT_TRUE(file.Close());
        return m_directory.ReadFile(L"written");
    }

    TempDir m_directory;
};

// Reads at most `count` bytes from the current position of `file`.
std::string ReadBytes(FFile& file, unsigned int count)
{
    std::string bytes(count, '\0');
    const long long start = file.GetOffset();
    if (!file.Read(bytes.data(), count))
        return {};
    bytes.resize(static_cast<std::size_t>(file.GetOffset() - start));
    return bytes;
}

// Reads from a file that has no position.
std::string ReadFromPipe(FFile& file)
{
    char bytes[10] = "";
    return file.Read(bytes, sizeof bytes - 1) ? bytes : "";
}

TEST_F(FFileTest, IsClosedInitially)
{
    const FFile file;

    EXPECT_FALSE(file.IsOpened());
}

TEST_F(FFileTest, CreatesAMissingFileDependingOnTheMode)
{
    constexpr std::pair<const wchar_t*, bool> cases[] = {
        {L"r", false},  {L"rb", false}, {L"r+", false},     {L"r+b", false},
        {L"w", true},   {L"wb", true},  {L"w+", true},      {L"a", true},
        {L"ab", true},  {L"a+", true},  {L"", false},       {L"q", false},
        {L"+r", false}, {L" r", false}, {L"\u0440", false}, {L"wx", true}};
    for (const auto& [mode, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(mode));
        const TempDir directory;
        FFile file;
        EXPECT_EQ(file.Open(directory.File(L"new"), mode), expected);
        EXPECT_EQ(file.IsOpened(), expected);
        EXPECT_EQ(FFile::Exists(directory.File(L"new")), expected);
    }
}

TEST_F(FFileTest, OverwritesTruncatesOrAppendsDependingOnTheMode)
{
    constexpr std::pair<const wchar_t*, const char*> cases[] = {
        {L"r", "old text"},     {L"r+", "newztext"},     {L"w", "newz"},      {L"w+", "newz"},
        {L"a", "old textnewz"}, {L"a+", "old textnewz"}, {L"rb+", "newztext"}};
    for (const auto& [mode, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(mode));
        FFile file;
        ASSERT_TRUE(file.Open(m_directory.WriteFile(L"file", "old text"), mode));
        file.Write(L"newz");
        EXPECT_TRUE(file.Close());
        EXPECT_EQ(m_directory.ReadFile(L"file"), expected);
    }
}

TEST_F(FFileTest, ReadsDependingOnTheMode)
{
    constexpr std::pair<const wchar_t*, const char*> cases[] = {{L"r", "0123456789"},
                                                                {L"rb", "0123456789"},
                                                                {L"r+", "0123456789"},
                                                                {L"a+", "0123456789"},
                                                                {L"w+", ""},
                                                                {L"w", ""},
                                                                {L"a", ""}};
    for (const auto& [mode, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(mode));
        FFile file;
        ASSERT_TRUE(file.Open(WriteDigits(), mode));
        file.Seek(0, true);
        EXPECT_EQ(ReadBytes(file, 100), expected);
    }
}

TEST_F(FFileTest, FailsForAnExistingFileInExclusiveMode)
{
    FFile file;

    EXPECT_FALSE(file.Open(WriteDigits(), L"wx"));
    EXPECT_EQ(m_directory.ReadFile(L"digits"), "0123456789");
}

TEST_F(FFileTest, ReturnsWhetherAnyByteWasRead)
{
    FFile file;
    ASSERT_TRUE(file.Open(WriteDigits(), L"rb"));
    std::array<char, 100> buffer{};

    EXPECT_TRUE(file.Read(buffer.data(), 100));
    EXPECT_STREQ(buffer.data(), "0123456789");
    EXPECT_FALSE(file.Read(buffer.data(), 100));
}

TEST_F(FFileTest, ReadsAtMostTheRequestedCount)
{
    FFile file;
    ASSERT_TRUE(file.Open(WriteDigits(), L"rb"));

    EXPECT_EQ(ReadBytes(file, 4), "0123");
    EXPECT_EQ(ReadBytes(file, 4), "4567");
    EXPECT_EQ(ReadBytes(file, 4), "89");
    EXPECT_FALSE(file.Read(nullptr, 4));
}

TEST_F(FFileTest, ReturnsFalseForAReadOfZeroBytes)
{
    FFile file;
    ASSERT_TRUE(file.Open(WriteDigits(), L"rb"));
    char byte = '-';

    EXPECT_FALSE(file.Read(&byte, 0));
    EXPECT_EQ(byte, '-');
}

TEST_F(FFileTest, ReportsTheEndOfFileOnlyAfterAReadPastIt)
{
    FFile file;
    ASSERT_TRUE(file.Open(WriteDigits(), L"rb"));

    EXPECT_EQ(ReadBytes(file, 10), "0123456789");
    EXPECT_FALSE(file.IsEOF());
    EXPECT_EQ(ReadBytes(file, 1), "");
    EXPECT_TRUE(file.IsEOF());
    EXPECT_TRUE(file.Seek(0, true));
    EXPECT_FALSE(file.IsEOF());
}

TEST_F(FFileTest, WritesTextAsUtf8)
{
    const std::pair<TString<wchar_t>, std::string> cases[] = {
        {L"", ""},
        {L"plain\r\n", "plain\r\n"},
        {L"\u00E9\u20AC", "\xC3\xA9\xE2\x82\xAC"},
        {L"\U0001F600", "\xF0\x9F\x98\x80"},
        {std::wstring(L"a\0b", 3), std::string("a\0b", 3)},
        {static_cast<wchar_t>(0xD800), "\xED\xA0\x80"}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(expected);
        EXPECT_EQ(WriteAndReadBack(text), expected);
    }
}

TEST_F(FFileTest, WritesTextAsUtf8InAnyLocale)
{
    for (const char* const locale : {"C", "C.UTF-8"}) {
        SCOPED_TRACE(locale);
        const ScopedLocale scopedLocale(locale);
        EXPECT_EQ(WriteAndReadBack(L"\u0444"), "\xD1\x84");
    }
}

TEST_F(FFileTest, DoesNotWriteTextWithAnInvalidCharacter)
{
    for (const wchar_t character : {static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1)}) {
        EXPECT_EQ(WriteAndReadBack(TString<wchar_t>(L"before ") + character + L" after"), "");
    }
}

TEST_F(FFileTest, CountsBufferedBytesInTheLength)
{
    FFile file;
    ASSERT_TRUE(file.Open(m_directory.File(L"new"), L"w"));

    EXPECT_EQ(file.GetLength(), 0u);
    file.Write(L"\u20AC12");
    EXPECT_EQ(file.GetLength(), 5u);
    EXPECT_EQ(file.GetOffset(), 5);
}

TEST_F(FFileTest, ReturnsTheLow32BitsOfTheLength)
{
    const TString<wchar_t> name = m_directory.WriteFile(L"sparse", "");
    std::filesystem::resize_file(m_directory.Path() / "sparse", 4294967301); // 4 GiB and 5 bytes
    FFile file;
    ASSERT_TRUE(file.Open(name, L"rb"));

    EXPECT_EQ(file.GetLength(), 5u);
    EXPECT_TRUE(file.SeekEnd(0));
    EXPECT_EQ(file.GetOffset(), 4294967301);
}

TEST_F(FFileTest, KeepsPositionAndEndOfFileWhenAskedForItsLength)
{
    FFile file;
    ASSERT_TRUE(file.Open(WriteDigits(), L"rb"));
    ASSERT_EQ(ReadBytes(file, 3), "012");

    EXPECT_EQ(file.GetLength(), 10u);
    EXPECT_EQ(ReadBytes(file, 100), "3456789");
    EXPECT_EQ(file.GetLength(), 10u);
    EXPECT_TRUE(file.IsEOF());
    EXPECT_EQ(file.GetOffset(), 10);
}

TEST_F(FFileTest, SeeksFromTheStartOrTheCurrentPosition)
{
    FFile file;
    ASSERT_TRUE(file.Open(WriteDigits(), L"rb"));

    EXPECT_TRUE(file.Seek(10, true));
    EXPECT_EQ(file.GetOffset(), 10);
    EXPECT_TRUE(file.Seek(10, false));
    EXPECT_EQ(file.GetOffset(), 20);
    EXPECT_TRUE(file.Seek(-16, false));
    EXPECT_EQ(ReadBytes(file, 2), "45");
}

TEST_F(FFileTest, SeeksFromTheEnd)
{
    FFile file;
    ASSERT_TRUE(file.Open(WriteDigits(), L"rb"));

    EXPECT_TRUE(file.SeekEnd(-3));
    EXPECT_EQ(ReadBytes(file, 100), "789");
    EXPECT_TRUE(file.SeekEnd(0));
    EXPECT_EQ(file.GetOffset(), 10);
}

TEST_F(FFileTest, FailsAndDoesNotMoveWhenSeekingBeforeTheStart)
{
    FFile file;
    ASSERT_TRUE(file.Open(WriteDigits(), L"rb"));
    ASSERT_TRUE(file.Seek(4, true));

    EXPECT_FALSE(file.Seek(-1, true));
    EXPECT_FALSE(file.Seek(-5, false));
    EXPECT_FALSE(file.SeekEnd(-11));
    EXPECT_EQ(file.GetOffset(), 4);
}

TEST_F(FFileTest, StartsAtTheBeginningOrEndDependingOnTheMode)
{
    constexpr std::pair<const wchar_t*, long long> cases[] = {{L"r", 0},   {L"r+", 0}, {L"a", 10},
                                                              {L"ab", 10}, {L"a+", 0}, {L"w", 0}};
    for (const auto& [mode, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(mode));
        FFile file;
        ASSERT_TRUE(file.Open(WriteDigits(), mode));
        EXPECT_EQ(file.GetOffset(), expected);
    }
}

TEST_F(FFileTest, SeeksBeyond4GiB)
{
    FFile file;
    ASSERT_TRUE(file.Open(WriteDigits(), L"r+b"));

    EXPECT_TRUE(file.Seek(8589934592, true));
    EXPECT_EQ(file.GetOffset(), 8589934592);
    file.Write(L"x");
    EXPECT_EQ(file.GetOffset(), 8589934593);
    EXPECT_EQ(file.GetLength(), 1u);
}

TEST_F(FFileTest, WritesBufferedTextWhenFlushed)
{
    FFile file;
    ASSERT_TRUE(file.Open(m_directory.File(L"new"), L"w"));
    file.Write(L"text");

    EXPECT_TRUE(file.Flush());
    EXPECT_EQ(m_directory.ReadFile(L"new"), "text");
}

TEST_F(FFileTest, WritesBufferedTextInItsDestructor)
{
    {
        FFile file;
        ASSERT_TRUE(file.Open(m_directory.File(L"new"), L"w"));
        file.Write(L"text");
    }

    EXPECT_EQ(m_directory.ReadFile(L"new"), "text");
}

TEST_F(FFileTest, ClosesTheOldFileWhenOpenedAgain)
{
    FFile file;
    ASSERT_TRUE(file.Open(m_directory.File(L"first"), L"w"));
    file.Write(L"text");

    EXPECT_TRUE(file.Open(WriteDigits(), L"r"));
    EXPECT_EQ(m_directory.ReadFile(L"first"), "text");
    EXPECT_EQ(ReadBytes(file, 2), "01");
    EXPECT_FALSE(file.Open(m_directory.File(L"missing"), L"r"));
    EXPECT_FALSE(file.IsOpened());
}

void ExpectResultsOfAClosedFile(FFile& file)
{
    char byte = '-';
    EXPECT_FALSE(file.IsOpened());
    EXPECT_FALSE(file.Read(&byte, 1));
    EXPECT_TRUE(file.Flush());
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(file.GetLength(), 0u);
    EXPECT_TRUE(file.IsEOF());
    EXPECT_EQ(file.GetOffset(), -1);
    EXPECT_FALSE(file.Seek(0, true));
    EXPECT_FALSE(file.SeekEnd(0));
    file.Write(L"text");
}

TEST_F(FFileTest, ReturnsDefinedResultsWhenClosed)
{
    FFile file;

    ExpectResultsOfAClosedFile(file);
    ASSERT_TRUE(file.Open(WriteDigits(), L"r+"));
    EXPECT_TRUE(file.Close());
    ExpectResultsOfAClosedFile(file);
    EXPECT_EQ(m_directory.ReadFile(L"digits"), "0123456789");
}

TEST_F(FFileTest, DoesNotOpenADirectoryOrAFileInAMissingDirectory)
{
    ASSERT_TRUE(std::filesystem::create_directory(m_directory.Path() / "directory"));
    FFile file;

    for (const wchar_t* const name : {L"directory", L"directory/missing/file"}) {
        for (const wchar_t* const mode : {L"r", L"r+", L"w", L"a+"}) {
            SCOPED_TRACE(testing::PrintToString(name));
            EXPECT_FALSE(file.Open(m_directory.File(name), mode));
        }
        EXPECT_FALSE(FFile::Exists(m_directory.File(name)));
    }
    EXPECT_FALSE(file.Open(L"", L"r"));
    EXPECT_FALSE(FFile::Exists(L""));
}

TEST_F(FFileTest, ReadsAPipeWhenItsOtherEndIsOpened)
{
    const TString<wchar_t> pipe = m_directory.File(L"pipe");
    ASSERT_EQ(::mkfifo((m_directory.Path() / "pipe").c_str(), 0600), 0);
    for (const wchar_t* const mode : {L"w", L"a"}) {
        const auto writer = std::async(std::launch::async, [&pipe, mode] {
            FFile file;
            EXPECT_TRUE(file.Open(pipe, mode));
            file.Write(L"text");
        });
        FFile file;
        ASSERT_TRUE(file.Open(pipe, L"r"));
        EXPECT_EQ(file.GetLength(), 0u);
        EXPECT_EQ(file.GetOffset(), -1);
        EXPECT_EQ(ReadFromPipe(file), "text");
    }
    EXPECT_FALSE(FFile::Exists(pipe));
}

TEST_F(FFileTest, OpensDevices)
{
    FFile null;
    ASSERT_TRUE(null.Open(L"/dev/null", L"r+"));
    null.Write(L"text");
    EXPECT_TRUE(null.Flush());
    EXPECT_EQ(ReadFromPipe(null), "");

    FFile full;
    ASSERT_TRUE(full.Open(L"/dev/full", L"w"));
    full.Write(L"text");
    EXPECT_FALSE(full.Close());
}

TEST_F(FFileTest, OpensDescriptorsOfTheProcess)
{
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    ASSERT_EQ(::write(ends[1], "text", 4), 4);
    ::close(ends[1]);
    FFile file;

    ASSERT_TRUE(file.Open(L"/dev/fd/" + std::to_wstring(ends[0]), L"r"));
    EXPECT_EQ(ReadFromPipe(file), "text");
    ::close(ends[0]);
}

TEST_F(FFileTest, FollowsSymbolicLinks)
{
    WriteDigits();
    std::filesystem::create_symlink("digits", m_directory.Path() / "link");
    std::filesystem::create_symlink("missing", m_directory.Path() / "dangling");
    FFile file;

    EXPECT_TRUE(FFile::Exists(m_directory.File(L"link")));
    EXPECT_FALSE(FFile::Exists(m_directory.File(L"dangling")));
    ASSERT_TRUE(file.Open(m_directory.File(L"link"), L"r"));
    EXPECT_EQ(ReadBytes(file, 3), "012");
}

TEST_F(FFileTest, PassesNamesAsUtf8InAnyLocale)
{
    for (const char* const locale : {"C", "C.UTF-8"}) {
        SCOPED_TRACE(locale);
        const ScopedLocale scopedLocale(locale);
        const TempDir directory;
        FFile file;
        ASSERT_TRUE(file.Open(directory.File(L"na\u00EFve \u6587.txt"), L"w"));
        EXPECT_TRUE(FFile::Exists(directory.File(L"na\u00EFve \u6587.txt")));
        EXPECT_TRUE(std::filesystem::exists(directory.Path() / "na\xC3\xAFve \xE6\x96\x87.txt"));
    }
}

TEST_F(FFileTest, RejectsANameWithAnInvalidCharacter)
{
    const TString<wchar_t> name =
        m_directory.File(TString<wchar_t>(static_cast<wchar_t>(0x110000)));
    FFile file;

    EXPECT_FALSE(file.Open(name, L"w"));
    EXPECT_FALSE(FFile::Exists(name));
    EXPECT_THAT(std::filesystem::directory_iterator(m_directory.Path()),
                testing::Eq(std::filesystem::directory_iterator()));
}

TEST_F(FFileTest, ReportsAFullDiskWhenFlushed)
{
    FFile file;
    ASSERT_TRUE(file.Open(m_directory.File(L"new"), L"w"));
    file.Write(L"0123456789");

    const FileSizeLimit limit(4);
    EXPECT_FALSE(file.Flush());
}

TEST_F(FFileTest, ReportsAFullDiskWhenClosedButClosesTheFile)
{
    FFile file;
    ASSERT_TRUE(file.Open(m_directory.File(L"new"), L"w"));
    file.Write(L"0123456789");

    const FileSizeLimit limit(4);
    EXPECT_FALSE(file.Close());
    EXPECT_FALSE(file.IsOpened());
}

// Lists the files that a program inherits from this process.
std::string ListInheritedFiles()
{
    return RunProgram("/bin/ls", {"-l", "/proc/self/fd"}).output;
}

TEST_F(FFileTest, DoesNotLetStartedProgramsInheritTheFile)
{
    FFile file;
    ASSERT_TRUE(file.Open(m_directory.File(L"private"), L"w"));
    const int inherited = ::open((m_directory.Path() / "shared").c_str(), O_CREAT | O_RDWR, 0600);

    const std::string files = ListInheritedFiles();
    EXPECT_THAT(files, HasSubstr("/shared"));
    EXPECT_THAT(files, Not(HasSubstr("/private")));
    ::close(inherited);
}

TEST_F(FFileTest, WritesNothingWhenOutOfMemory)
{
    const TString<wchar_t> longText = std::wstring(1000000, L'x');
    FFile file;
    ASSERT_TRUE(file.Open(m_directory.File(L"new"), L"w"));
    {
        const AllocationLimit limit(100000);
        file.Write(longText);
        EXPECT_FALSE(FFile::Exists(longText));
        EXPECT_FALSE(FFile().Open(longText, L"w"));
    }
    file.Write(L"short");

    EXPECT_TRUE(file.Close());
    EXPECT_EQ(m_directory.ReadFile(L"new"), "short");
}

TEST_F(FFileTest, FailsSilently)
{
    const CapturedLog log;
    testing::internal::CaptureStderr();
    {
        FFile file;
        file.Open(m_directory.File(L"missing"), L"r");
        file.Open(m_directory.File(L""), L"r");
        file.Open(WriteDigits(), L"r");
        file.Write(L"text");
        file.Seek(-1, true);
        const FileSizeLimit limit(4);
        file.Open(m_directory.File(L"new"), L"w");
        file.Write(L"0123456789");
    }

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(log.Lines(), IsEmpty());
}

} // namespace
} // namespace Toolkit
