#include "toolkit/files/TextFile.h"

#include "support/CapturedLog.h"
#include "support/FileSizeLimit.h"
#include "support/OutOfMemory.h"
#include "support/ScopedLocale.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <new>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::AllocationLimit;
using TestSupport::CapturedLog;
using TestSupport::FileSizeLimit;
using TestSupport::ScopedLocale;
using TestSupport::TempDir;
using Lines = std::vector<std::wstring>;

std::string Bytes(const char* text, std::size_t length)
{
    return {text, length};
}

// Returns all lines of `file`. A file with one empty line yields none, like a file without lines.
Lines ReadLines(TextFile& file)
{
    Lines lines;
    const TString<wchar_t> first = file.GetFirstLine();
    if (file.Eof() && first.empty())
        return lines;
    lines.push_back(first);
    while (!file.Eof())
        lines.push_back(file.GetNextLine());
    return lines;
}

class TextFileTest : public testing::Test {
protected:
    // Writes `bytes` to a file and opens it in m_file.
    void Open(const std::string& bytes)
    {
        ASSERT_TRUE(m_file.Open(m_directory.WriteFile(L"file.txt", bytes)));
    }

    std::string ReadContents() const { return m_directory.ReadFile(L"file.txt"); }

    // Returns the number of files in the directory.
    std::ptrdiff_t CountFiles() const
    {
        const std::filesystem::directory_iterator files(m_directory.Path());
        return std::distance(begin(files), end(files));
    }

    TempDir m_directory;
    TextFile m_file;
};

TEST_F(TextFileTest, EndsLinesAtLineFeedCarriageReturnOrBoth)
{
    const std::pair<std::string, Lines> cases[] = {{"", {}},
                                                   {"a", {L"a"}},
                                                   {"a\n", {L"a"}},
                                                   {"a\nb", {L"a", L"b"}},
                                                   {"a\r\nb\r\n", {L"a", L"b"}},
                                                   {"a\rb\r", {L"a", L"b"}},
                                                   {"a\nb\r\nc\rd", {L"a", L"b", L"c", L"d"}},
                                                   {"a\n\nb", {L"a", L"", L"b"}},
                                                   {"a\r\rb", {L"a", L"", L"b"}},
                                                   {"a\n\rb", {L"a", L"", L"b"}},
                                                   {"a\r\r\nb", {L"a", L"", L"b"}},
                                                   {"\n\na", {L"", L"", L"a"}},
                                                   {"a\n\n", {L"a", L""}},
                                                   {" \t a \v\f b \n", {L" \t a \v\f b "}}};
    for (const auto& [bytes, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        Open(bytes);
        EXPECT_EQ(ReadLines(m_file), expected);
    }
}

TEST_F(TextFileTest, FollowsAByteOrderMarkAndDropsIt)
{
    const std::pair<std::string, Lines> cases[] = {
        {"\xEF\xBB\xBF\xC3\xA9\nb", {L"\u00E9", L"b"}},
        {Bytes("\xFE\xFF\x20\xAC\x00\n\xD8\x3D\xDE\x00", 10), {L"\u20AC", L"\U0001F600"}},
        {Bytes("\xFF\xFE\xAC\x20\n\x00\x3D\xD8\x00\xDE", 10), {L"\u20AC", L"\U0001F600"}},
        {Bytes("\x00\x00\xFE\xFF\x00\x00\x20\xAC\x00\x00\x00\n\x00\x01\xF6\x00", 16),
         {L"\u20AC", L"\U0001F600"}},
        {Bytes("\xFF\xFE\x00\x00\xAC\x20\x00\x00\n\x00\x00\x00\x00\xF6\x01\x00", 16),
         {L"\u20AC", L"\U0001F600"}},
        {"\xEF\xBB\xBF", {}},
        {Bytes("\xFE\xFF", 2), {}},
        {Bytes("\xFF\xFE", 2), {}},
        {Bytes("\x00\x00\xFE\xFF", 4), {}},
        {Bytes("\xFF\xFE\x00\x00", 4), {}}};
    for (const auto& [bytes, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        Open(bytes);
        EXPECT_EQ(ReadLines(m_file), expected);
    }
}

TEST_F(TextFileTest, ReadsUtf8WithoutByteOrderMarkInAnyLocale)
{
    for (const char* const locale : {"C", "C.UTF-8"}) {
        SCOPED_TRACE(locale);
        const ScopedLocale scopedLocale(locale);
        Open("\xC3\xA9\xE6\x96\x87\n\xF0\x9F\x98\x80");
        EXPECT_THAT(ReadLines(m_file), ElementsAre(L"\u00E9\u6587", L"\U0001F600"));
    }
}

TEST_F(TextFileTest, ReadsTheWholeFileAsLatin1AfterOneInvalidByte)
{
    const std::pair<std::string, Lines> cases[] = {
        {"\xC3\xA9\n\xE9", {L"\u00C3\u00A9", L"\u00E9"}},
        {"a\xC3", {L"a\u00C3"}},
        {"a\xC3\nb", {L"a\u00C3", L"b"}},
        {"\xE0\x80\xAF", {L"\u00E0\u0080\u00AF"}},
        {"\xED\xA0\x80", {L"\u00ED\u00A0\u0080"}},
        {"\xF4\x90\x80\x80", {L"\u00F4\u0090\u0080\u0080"}},
        {"\xEF\xBB\xBF\xE9", {L"\u00E9"}},
        {"\xFF\x80", {L"\u00FF\u0080"}}};
    for (const auto& [bytes, expected] : cases) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        Open(bytes);
        EXPECT_EQ(ReadLines(m_file), expected);
    }
}

TEST_F(TextFileTest, CannotOpenInvalidUtf16OrUtf32)
{
    const std::string cases[] = {Bytes("\xFE\xFF\x00", 3),
                                 Bytes("\xFF\xFE\x41\x00\x42", 5),
                                 Bytes("\xFE\xFF\xD8\x00", 4),
                                 Bytes("\xFF\xFE\x00\x00\x41\x00", 6),
                                 Bytes("\x00\x00\xFE\xFF\x00\x11\x00\x00", 8),
                                 Bytes("\x00\x00\xFE\xFF\x00\x00\xD8\x00", 8)};
    for (const std::string& bytes : cases) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        EXPECT_FALSE(m_file.Open(m_directory.WriteFile(L"file.txt", bytes)));
        EXPECT_TRUE(m_file.Eof());
        EXPECT_FALSE(m_file.Write());
        EXPECT_EQ(ReadContents(), bytes);
    }
}

TEST_F(TextFileTest, KeepsNullCharactersInTheirLine)
{
    Open(Bytes("a\0b\n\0", 5));

    EXPECT_THAT(ReadLines(m_file), ElementsAre(std::wstring(L"a\0b", 3), std::wstring(L"\0", 1)));
    EXPECT_TRUE(m_file.Write());
    EXPECT_EQ(ReadContents(), Bytes("a\0b\n\0", 5));
}

TEST_F(TextFileTest, IsAtTheEndOnTheLastLineAndWithoutLines)
{
    EXPECT_TRUE(m_file.Eof());
    Open("a\nb\nc\n");

    EXPECT_EQ(m_file.GetFirstLine(), L"a");
    EXPECT_FALSE(m_file.Eof());
    EXPECT_EQ(m_file.GetNextLine(), L"b");
    EXPECT_FALSE(m_file.Eof());
    EXPECT_EQ(m_file.GetNextLine(), L"c");
    EXPECT_TRUE(m_file.Eof());
}

TEST_F(TextFileTest, IsAtTheEndAtOnceInAFileOfOneLine)
{
    Open("a");

    EXPECT_TRUE(m_file.Eof());
    EXPECT_EQ(m_file.GetFirstLine(), L"a");
    EXPECT_TRUE(m_file.Eof());
}

TEST_F(TextFileTest, ReturnsEmptyLinesAfterTheLast)
{
    Open("a\nb");
    ASSERT_EQ(m_file.GetNextLine(), L"b");

    EXPECT_EQ(m_file.GetNextLine(), L"");
    EXPECT_EQ(m_file.GetNextLine(), L"");
    EXPECT_TRUE(m_file.Eof());
    EXPECT_EQ(m_file.GetFirstLine(), L"a");
    EXPECT_EQ(m_file.GetNextLine(), L"b");
}

TEST_F(TextFileTest, ReturnsEmptyLinesFromAnEmptyList)
{
    EXPECT_EQ(m_file.GetFirstLine(), L"");
    EXPECT_EQ(m_file.GetNextLine(), L"");
    Open("");
    EXPECT_EQ(m_file.GetFirstLine(), L"");
    EXPECT_EQ(m_file.GetNextLine(), L"");
    EXPECT_TRUE(m_file.Eof());
}

TEST_F(TextFileTest, ReplacesTheLinesAndResetsTheCursorWhenOpenedAgain)
{
    Open("a\nb\nc");
    m_file.GetNextLine();
    Open("d\ne");

    EXPECT_EQ(m_file.GetNextLine(), L"e");
    EXPECT_THAT(ReadLines(m_file), ElementsAre(L"d", L"e"));
}

TEST_F(TextFileTest, HasNoLinesAfterAFailedOpen)
{
    Open("a\nb");

    EXPECT_FALSE(m_file.Open(m_directory.File(L"missing")));
    EXPECT_TRUE(m_file.Eof());
    EXPECT_EQ(m_file.GetFirstLine(), L"");
    EXPECT_FALSE(m_file.Write());
    EXPECT_EQ(ReadContents(), "a\nb");
}

TEST_F(TextFileTest, DoesNotOpenDirectoriesOrMissingFiles)
{
    std::filesystem::create_directory(m_directory.Path() / "directory");

    for (const wchar_t* const name : {L"directory", L"missing"})
        EXPECT_FALSE(m_file.Open(m_directory.File(name)));
    EXPECT_FALSE(m_file.Open(L""));
}

TEST_F(TextFileTest, ReadsAPipeToItsEndAndDoesNotWriteIt)
{
    const std::string path = m_directory.Path() / "pipe";
    const std::string longLine(200000, 'x');
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const auto writer = std::async(std::launch::async, [&] {
        std::ofstream(path) << "first\n" << longLine << "\nlast\n";
    });

    ASSERT_TRUE(m_file.Open(m_directory.File(L"pipe")));
    EXPECT_EQ(m_file.GetFirstLine(), L"first");
    EXPECT_EQ(m_file.GetNextLine().size(), longLine.size());
    EXPECT_EQ(m_file.GetNextLine(), L"last");
    EXPECT_TRUE(m_file.Eof());
    EXPECT_FALSE(m_file.Write());
    EXPECT_TRUE(std::filesystem::is_fifo(path));
}

TEST_F(TextFileTest, ReadsADeviceAndDoesNotReplaceIt)
{
    ASSERT_TRUE(m_file.Open(L"/dev/null"));
    m_file.AddLine(L"line");

    EXPECT_FALSE(m_file.Write());
    EXPECT_FALSE(std::filesystem::is_regular_file("/dev/null"));
}

TEST_F(TextFileTest, CreatesADeletedFileAgainAndAppliesTheUmask)
{
    Open("a");
    std::filesystem::remove(m_directory.Path() / "file.txt");
    const mode_t oldMask = ::umask(0022);
    EXPECT_TRUE(m_file.Write());
    ::umask(oldMask);

    EXPECT_EQ(ReadContents(), "a");
    EXPECT_EQ(std::filesystem::status(m_directory.Path() / "file.txt").permissions(),
              std::filesystem::perms(0644));
}

TEST_F(TextFileTest, DropsTheLinesButKeepsTheFileWhenClosed)
{
    Open("a\nb");

    EXPECT_TRUE(m_file.Close());
    EXPECT_TRUE(m_file.Eof());
    EXPECT_TRUE(m_file.Close());
    EXPECT_EQ(ReadContents(), "a\nb");
}

TEST_F(TextFileTest, NeedsAnOpenFileToWrite)
{
    EXPECT_FALSE(m_file.Write());
    Open("a\nb");
    m_file.Close();
    m_file.AddLine(L"c");

    EXPECT_FALSE(m_file.Write());
    EXPECT_EQ(ReadContents(), "a\nb");
}

TEST_F(TextFileTest, WritesLineEndsUnchanged)
{
    for (const char* const bytes :
         {"", "a", "a\n", "a\nb\r\nc\rd", "\r\n\n\r", "a\r\r\n\n\rb", "a\rb\r"}) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        Open(bytes);
        EXPECT_TRUE(m_file.Write());
        EXPECT_EQ(ReadContents(), bytes);
    }
}

TEST_F(TextFileTest, WritesUtf8WithoutByteOrderMark)
{
    for (const std::string& bytes :
         {std::string("\xEF\xBB\xBF\xE2\x82\xAC\n"), Bytes("\xFE\xFF\x20\xAC\x00\n", 6),
          Bytes("\xFF\xFE\xAC\x20\n\x00", 6)}) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        Open(bytes);
        EXPECT_TRUE(m_file.Write());
        EXPECT_EQ(ReadContents(), "\xE2\x82\xAC\n");
    }
}

TEST_F(TextFileTest, EndsAddedLinesWithALineFeed)
{
    Open("a\r\nb\r\n");
    m_file.AddLine(L"\u20AC");
    m_file.AddLine(L"");

    EXPECT_THAT(ReadLines(m_file), ElementsAre(L"a", L"b", L"\u20AC", L""));
    EXPECT_TRUE(m_file.Write());
    EXPECT_EQ(ReadContents(), "a\r\nb\r\n\xE2\x82\xAC\n\n");
}

TEST_F(TextFileTest, DoesNotJoinAnAddedLineToAnUnterminatedLine)
{
    Open("a\nb");
    m_file.AddLine(L"c");

    EXPECT_TRUE(m_file.Write());
    EXPECT_EQ(ReadContents(), "a\nb\nc\n");
}

TEST_F(TextFileTest, KeepsTheCursorWhenALineIsAdded)
{
    Open("a\nb");
    ASSERT_EQ(m_file.GetNextLine(), L"b");
    ASSERT_TRUE(m_file.Eof());

    m_file.AddLine(L"c");
    EXPECT_FALSE(m_file.Eof());
    EXPECT_EQ(m_file.GetNextLine(), L"c");
}

TEST_F(TextFileTest, EmptiesTheListButKeepsTheFileOpenWhenCleared)
{
    Open("a\nb");
    m_file.Clear();

    EXPECT_TRUE(m_file.Eof());
    EXPECT_EQ(m_file.GetFirstLine(), L"");
    EXPECT_EQ(ReadContents(), "a\nb");
    m_file.AddLine(L"c");
    EXPECT_TRUE(m_file.Write());
    EXPECT_EQ(ReadContents(), "c\n");
}

TEST_F(TextFileTest, AcceptsLinesWithoutAFile)
{
    m_file.AddLine(L"a");
    m_file.AddLine(L"b");

    EXPECT_THAT(ReadLines(m_file), ElementsAre(L"a", L"b"));
}

TEST_F(TextFileTest, KeepsTheOldFileWhenALineHasAnInvalidCharacter)
{
    Open("a\n");
    m_file.AddLine(static_cast<wchar_t>(0x110000));

    EXPECT_FALSE(m_file.Write());
    EXPECT_EQ(ReadContents(), "a\n");
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(TextFileTest, KeepsTheOldFileOnAFullDisk)
{
    Open("old\n");
    m_file.AddLine(TString<wchar_t>(std::wstring(1000, L'x')));

    const FileSizeLimit limit(500);
    EXPECT_FALSE(m_file.Write());
    EXPECT_EQ(ReadContents(), "old\n");
    EXPECT_EQ(CountFiles(), 1);
}

// Drops root privileges while the object exists, because file permissions do not restrict root.
class OrdinaryUser {
public:
    OrdinaryUser() : m_oldUser(::geteuid())
    {
        constexpr uid_t nobody = 65534;
        if (m_oldUser == 0) {
            EXPECT_EQ(::seteuid(nobody), 0);
        }
    }
    ~OrdinaryUser() { EXPECT_EQ(::seteuid(m_oldUser), 0); }

    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    uid_t m_oldUser;
};

TEST_F(TextFileTest, KeepsTheOldFileInAnUnwritableDirectory)
{
    Open("old\n");
    m_file.AddLine(L"new");
    std::filesystem::permissions(m_directory.Path() / "file.txt", std::filesystem::perms(0666));
    std::filesystem::permissions(m_directory.Path(), std::filesystem::perms(0555));
    {
        const OrdinaryUser user;
        EXPECT_FALSE(m_file.Write());
    }
    std::filesystem::permissions(m_directory.Path(), std::filesystem::perms(0755));

    EXPECT_EQ(ReadContents(), "old\n");
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(TextFileTest, CannotOpenAnUnreadableFile)
{
    const TString<wchar_t> name = m_directory.WriteFile(L"file.txt", "a");
    std::filesystem::permissions(m_directory.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(m_directory.Path() / "file.txt", std::filesystem::perms::none);

    const OrdinaryUser user;
    EXPECT_FALSE(m_file.Open(name));
}

TEST_F(TextFileTest, KeepsTheFilePermissionsWhenWriting)
{
    Open("a\n");
    std::filesystem::permissions(m_directory.Path() / "file.txt", std::filesystem::perms(0640));
    m_file.AddLine(L"b");

    EXPECT_TRUE(m_file.Write());
    EXPECT_EQ(std::filesystem::status(m_directory.Path() / "file.txt").permissions(),
              std::filesystem::perms(0640));
}

TEST_F(TextFileTest, KeepsALinkWhenWritingItsTarget)
{
    m_directory.WriteFile(L"file.txt", "a\n");
    std::filesystem::create_symlink("file.txt", m_directory.Path() / "link");
    ASSERT_TRUE(m_file.Open(m_directory.File(L"link")));
    m_file.AddLine(L"b");

    EXPECT_TRUE(m_file.Write());
    EXPECT_TRUE(std::filesystem::is_symlink(m_directory.Path() / "link"));
    EXPECT_EQ(ReadContents(), "a\nb\n");
}

TEST_F(TextFileTest, CreatesTheDeletedTargetOfALink)
{
    m_directory.WriteFile(L"file.txt", "a\n");
    std::filesystem::create_symlink("file.txt", m_directory.Path() / "near");
    std::filesystem::create_symlink(m_directory.Path() / "near", m_directory.Path() / "link");
    ASSERT_TRUE(m_file.Open(m_directory.File(L"link")));
    std::filesystem::remove(m_directory.Path() / "file.txt");

    EXPECT_TRUE(m_file.Write());
    EXPECT_TRUE(std::filesystem::is_symlink(m_directory.Path() / "link"));
    EXPECT_TRUE(std::filesystem::is_symlink(m_directory.Path() / "near"));
    EXPECT_EQ(ReadContents(), "a\n");
}

TEST_F(TextFileTest, CannotWriteThroughCircularLinks)
{
    Open("a\n");
    std::filesystem::remove(m_directory.Path() / "file.txt");
    std::filesystem::create_symlink("file.txt", m_directory.Path() / "file.txt");

    EXPECT_FALSE(m_file.Write());
    EXPECT_TRUE(std::filesystem::is_symlink(m_directory.Path() / "file.txt"));
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(TextFileTest, PassesNamesAsUtf8InTheCLocale)
{
    const ScopedLocale locale("C");
    const TString<wchar_t> name = m_directory.WriteFile(L"\u6587.txt", "a\n");

    ASSERT_TRUE(m_file.Open(name));
    m_file.AddLine(L"b");
    EXPECT_TRUE(m_file.Write());
    EXPECT_EQ(m_directory.ReadFile(L"\u6587.txt"), "a\nb\n");
}

TEST_F(TextFileTest, WritesTheOpenedFileAfterTheWorkingDirectoryChanges)
{
    const std::filesystem::path before = std::filesystem::current_path();
    m_directory.WriteFile(L"file.txt", "a\n");
    std::filesystem::current_path(m_directory.Path());
    ASSERT_TRUE(m_file.Open(L"file.txt"));
    std::filesystem::current_path(before);
    m_file.AddLine(L"b");

    EXPECT_TRUE(m_file.Write());
    EXPECT_EQ(ReadContents(), "a\nb\n");
}

TEST_F(TextFileTest, CannotOpenAFileWithoutFreeDescriptors)
{
    const TString<wchar_t> name = m_directory.WriteFile(L"file.txt", "a");
    rlimit oldLimit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &oldLimit), 0);
    const rlimit none{0, oldLimit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);

    const bool opened = m_file.Open(name);
    ::setrlimit(RLIMIT_NOFILE, &oldLimit);

    EXPECT_FALSE(opened);
    EXPECT_TRUE(m_file.Open(name));
}

TEST_F(TextFileTest, DoesNotOpenAFileWhenOutOfMemory)
{
    const TString<wchar_t> name = m_directory.WriteFile(L"file.txt", std::string(1000000, 'x'));
    {
        const AllocationLimit limit(100000);
        EXPECT_FALSE(m_file.Open(name));
        EXPECT_TRUE(m_file.Eof());
    }

    EXPECT_TRUE(m_file.Open(name));
}

TEST_F(TextFileTest, KeepsTheCursorWhenALineDoesNotFitIntoMemory)
{
    Open("short\n" + std::string(1000000, 'x') + "\nlast\n");
    m_file.GetFirstLine();
    {
        const AllocationLimit limit(100000);
        EXPECT_THROW(m_file.GetNextLine(), std::bad_alloc);
    }

    EXPECT_EQ(m_file.GetNextLine().size(), 1000000u);
    EXPECT_EQ(m_file.GetNextLine(), L"last");
}

TEST_F(TextFileTest, WritesNothingAfterALineWasLost)
{
    Open("first\n");
    const TString<wchar_t> longLine(std::wstring(1000000, L'x'));
    {
        const AllocationLimit limit(100000);
        m_file.AddLine(longLine);
    }
    m_file.AddLine(L"last");

    EXPECT_FALSE(m_file.Write());
    EXPECT_EQ(ReadContents(), "first\n");
}

TEST_F(TextFileTest, WritesAgainAfterAFileIsOpenedAgain)
{
    Open("first\n");
    const TString<wchar_t> longLine(std::wstring(1000000, L'x'));
    {
        const AllocationLimit limit(100000);
        m_file.AddLine(longLine);
    }
    Open("second\n");
    m_file.AddLine(L"last");

    EXPECT_TRUE(m_file.Write());
    EXPECT_EQ(ReadContents(), "second\nlast\n");
}

TEST_F(TextFileTest, FailsSilently)
{
    const CapturedLog log;
    testing::internal::CaptureStderr();
    m_file.Open(m_directory.File(L"missing"));
    m_file.Open(m_directory.File(L""));
    m_file.Write();
    m_file.GetNextLine();
    Open("\xC3");
    {
        const FileSizeLimit limit(1);
        m_file.Write();
    }

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(log.Lines(), IsEmpty());
}

} // namespace
} // namespace Toolkit
