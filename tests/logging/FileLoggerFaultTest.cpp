#include "toolkit/logging/FileLogger.h"
#include "toolkit/system/TickCount.h"

#include "support/FileSizeLimit.h"
#include "support/OutOfMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <regex>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "logging/LogFile.h"

namespace Toolkit {
namespace {

using TestSupport::AllocationLimit;
using TestSupport::Await;
using TestSupport::FindOpenFile;
using TestSupport::NoDescriptors;
using TestSupport::ReadWholeFile;

constexpr unsigned int c_noLimit = 0xFFFFFFFF;

class FileLoggerFaultTest : public TestSupport::LogFileTest {
protected:
    // Returns the fallback files, whose names end in a tick count.
    std::vector<std::filesystem::path> FindFallbacks() const
    {
        const std::regex pattern(m_name + "-[0-9]+\\.qvlog");
        std::vector<std::filesystem::path> fallbacks = FindFiles();
        std::erase_if(fallbacks, [&pattern](const std::filesystem::path& file) {
            return !std::regex_match(file.filename().native(), pattern);
        });
        return fallbacks;
    }

    // Logs while something else occupies the file's path, and checks that a fallback file contains
    // the text.
    void ExpectFallback() const
    {
        {
            FileLogger logger(SeverityVerbose, Name(), c_noLimit);
            logger.Write(L"text");
            Await([this] { return !FindFallbacks().empty(); });
        }
        ASSERT_EQ(FindFallbacks().size(), 1u);
        EXPECT_EQ(ReadWholeFile(FindFallbacks().front()), "text");
    }
};

TEST_F(FileLoggerFaultTest, DoesNotReplaceADirectory)
{
    std::filesystem::create_directory(Path());

    ExpectFallback();
    EXPECT_TRUE(std::filesystem::is_directory(Path()));
}

TEST_F(FileLoggerFaultTest, DoesNotReplaceAPipe)
{
    ASSERT_EQ(::mkfifo(Path().c_str(), 0600), 0);

    ExpectFallback();
    EXPECT_TRUE(std::filesystem::is_fifo(Path()));
}

TEST_F(FileLoggerFaultTest, WritesNothingToAPipeWithAReader)
{
    ASSERT_EQ(::mkfifo(Path().c_str(), 0600), 0);
    const int reader = ::open(Path().c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);

    ExpectFallback();
    char byte = 0;
    EXPECT_EQ(::read(reader, &byte, 1), 0);
    ::close(reader);
}

TEST_F(FileLoggerFaultTest, DoesNotFollowASymbolicLink)
{
    const TestSupport::TempDir directory;
    directory.WriteFile(L"precious", "data");
    std::filesystem::create_symlink(directory.Path() / "precious", Path());

    ExpectFallback();
    EXPECT_EQ(directory.ReadFile(L"precious"), "data");
}

TEST_F(FileLoggerFaultTest, CreatesNoFileThroughADanglingSymbolicLink)
{
    const TestSupport::TempDir directory;
    std::filesystem::create_symlink(directory.Path() / "absent", Path());

    ExpectFallback();
    EXPECT_FALSE(std::filesystem::exists(directory.Path() / "absent"));
}

TEST_F(FileLoggerFaultTest, DoesNotTouchAFileWithASecondHardLink)
{
    const std::filesystem::path other = "/tmp/" + m_name + "-other";
    std::ofstream(other) << "data";
    std::filesystem::create_hard_link(other, Path());

    ExpectFallback();
    EXPECT_EQ(ReadWholeFile(other), "data");
}

TEST_F(FileLoggerFaultTest, DoesNotTouchAFileOfAnotherUser)
{
    std::ofstream(Path()) << "data";
    std::filesystem::permissions(Path(), std::filesystem::perms(0666));
    if (::chown(Path().c_str(), 12345, 12345) != 0)
        GTEST_SKIP() << "only root may change the owner of a file";

    ExpectFallback();
    EXPECT_EQ(ReadWholeFile(Path()), "data");
}

TEST_F(FileLoggerFaultTest, KeepsTextUntilADescriptorIsAvailable)
{
    std::optional<NoDescriptors> noDescriptors(std::in_place);
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"early ");
        noDescriptors.reset();
        Await([this] { return !FindFiles().empty(); });
        logger.Write(L"late");
    }
    ASSERT_EQ(FindFiles().size(), 1u);
    EXPECT_EQ(ReadWholeFile(FindFiles().front()), "early late");
}

TEST_F(FileLoggerFaultTest, UsesANewTickCountForEachAttempt)
{
    std::optional<NoDescriptors> noDescriptors(std::in_place);
    const unsigned int start = GetTickCount();
    const FileLogger logger(SeverityVerbose, Name(), c_noLimit);

    // Many attempts to open a file fail during this time.
    Await([start] { return GetTickCount() - start >= 100; });
    const unsigned int earliest = GetTickCount();
    noDescriptors.reset();
    Await([this] { return !FindFallbacks().empty(); });

    const std::string name = FindFallbacks().front().stem().native();
    const unsigned long ticks = std::stoul(name.substr(m_name.size() + 1));
    EXPECT_LE(ticks - earliest, GetTickCount() - earliest);
}

TEST_F(FileLoggerFaultTest, StopsAtOnceWithoutAFile)
{
    auto fastest = std::chrono::steady_clock::duration::max();
    for (int round = 0; round < 5; ++round) {
        const NoDescriptors noDescriptors;
        auto logger = std::make_unique<FileLogger>(SeverityVerbose, Name(), c_noLimit);
        logger->Write(L"dropped");
        // The first attempts to open a file fail during this time.
        Thread::Sleep(50);

        const auto start = std::chrono::steady_clock::now();
        logger.reset();
        fastest = std::min(fastest, std::chrono::steady_clock::now() - start);
    }
    EXPECT_LT(fastest, std::chrono::milliseconds(100));
    EXPECT_TRUE(FindFiles().empty());
}

TEST_F(FileLoggerFaultTest, DropsTextWhenItsFileCannotBeCreated)
{
    {
        FileLogger logger(SeverityVerbose, Name() + L"/no/such/directory", c_noLimit);
        logger.Write(L"dropped");
    }
    EXPECT_TRUE(FindFiles().empty());
}

TEST_F(FileLoggerFaultTest, MayOutliveThePathManager)
{
    std::optional<NoDescriptors> noDescriptors(std::in_place);
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"text");
        PathManager::ReleaseInstance();
        noDescriptors.reset();
        Await([this] { return !FindFiles().empty(); });
    }
    EXPECT_EQ(ReadWholeFile(FindFiles().front()), "text");
}

TEST_F(FileLoggerFaultTest, DropsAPieceThatItHasNoMemoryToQueue)
{
    const TString<wchar_t> longPiece(std::wstring(1'000'000, L'x'));
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"before ");
        {
            const AllocationLimit limit(1'000'000);
            EXPECT_NO_THROW(logger.Write(longPiece));
        }
        logger.Write(L"after");
    }
    EXPECT_EQ(ReadWholeFile(Path()), "before after");
}

TEST_F(FileLoggerFaultTest, DropsAPieceThatItHasNoMemoryToEncode)
{
    std::optional<NoDescriptors> noDescriptors(std::in_place);
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"before ");
        logger.Write(std::wstring(1'000'000, L'x'));
        logger.Write(L"after");
        const AllocationLimit limit(500'000);
        noDescriptors.reset();
        // Until the file has more than the 7 bytes of "before ".
        Await([this] {
            return FindFiles().size() == 1 && ReadWholeFile(FindFiles().front()).size() > 7;
        });
    }
    EXPECT_EQ(ReadWholeFile(FindFiles().front()), "before after");
}

TEST_F(FileLoggerFaultTest, OpensItsFileWhenMemoryIsAvailableAgain)
{
    std::optional<NoDescriptors> noDescriptors(std::in_place);
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"text");
        // wxWidgets allocates memory while it starts the thread.
        Thread::Sleep(100);
        {
            const AllocationLimit none(0);
            // Several attempts to open a file fail during this time.
            Thread::Sleep(100);
        }
        noDescriptors.reset();
        Await([this] { return !FindFiles().empty(); });
    }
    EXPECT_EQ(ReadWholeFile(FindFiles().front()), "text");
}

TEST_F(FileLoggerFaultTest, KeepsTheTextThatFitsWhenTheDiskIsFull)
{
    testing::internal::CaptureStderr();
    {
        const TestSupport::FileSizeLimit limit(10000);
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        for (int i = 0; i < 30; ++i)
            logger.Write(std::wstring(999, L'x') + L"\n");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    std::string expected;
    for (int i = 0; i < 10; ++i)
        expected += std::string(999, 'x') + "\n";
    EXPECT_EQ(ReadWholeFile(Path()), expected);
}

TEST_F(FileLoggerFaultTest, WritesAgainWhenTheDiskHasRoom)
{
    std::optional<TestSupport::FileSizeLimit> limit(5000u);
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(std::wstring(5000, L'x'));
        Await([this] { return FindOpenFile(Path()).position == 5000; });
        logger.Write(L"lost");
        logger.Write(L"lost");
        // The writer, which sleeps for 500 ms at most, drops both pieces in one batch or in two.
        std::this_thread::sleep_for(std::chrono::milliseconds(700));
        limit.reset();
        logger.Write(L"found");
    }
    EXPECT_EQ(ReadWholeFile(Path()), std::string(5000, 'x') + "found");
}

} // namespace
} // namespace Toolkit
