#include "toolkit/logging/FileLogger.h"

#include "toolkit/logging/Log.h"

#include "support/CapturedLog.h"
#include "support/RandomText.h"
#include "support/ScopedLocale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include "logging/LogFile.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using TestSupport::Await;
using TestSupport::FindOpenFile;
using TestSupport::NoDescriptors;
using TestSupport::ReadWholeFile;

constexpr unsigned int c_noLimit = 0xFFFFFFFF;

class FileLoggerTest : public TestSupport::LogFileTest {
protected:
    // Waits until the writer has written `expected` and its file position is `position`.
    void AwaitFile(const std::string& expected, long position) const
    {
        Await([&] {
            return FindOpenFile(Path()).position == position && ReadWholeFile(Path()) == expected;
        });
    }
};

TEST_F(FileLoggerTest, DefinesItsConstants)
{
    EXPECT_EQ(FileLogger::c_strOpenMode, L"w");
    EXPECT_EQ(FileLogger::c_strLogExtension, L".qvlog");
    EXPECT_EQ(FileLogger::c_strTickSeparator, L"-");
}

TEST_F(FileLoggerTest, WritesPiecesUnchanged)
{
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        for (const wchar_t* const piece : {L"one", L"", L" two\n", L"three \u20AC\U0001F600"})
            logger.Write(piece);
        logger.Write(std::wstring(L"\0end", 4));
    }
    EXPECT_EQ(ReadWholeFile(Path()),
              std::string("one two\nthree \xE2\x82\xAC\xF0\x9F\x98\x80\0end", 25));
}

TEST_F(FileLoggerTest, OmitsTextThatUtf8CannotEncode)
{
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"a");
        logger.Write(std::wstring(3, static_cast<wchar_t>(0x110000)));
        logger.Write(L"b");
    }
    EXPECT_EQ(ReadWholeFile(Path()), "ab");
}

TEST_F(FileLoggerTest, WritesLinesAsTheProcessLogger)
{
    using TestSupport::IsLogLine;
    ILogger::CreateInstance();
    ILogger::SetLogger(new FileLogger(SeverityInfo, Name(), c_noLimit));

    TOOLKIT_LOG_AT_LINE(SeverityInfo, 64) << L"kept" << 1 << ILogger::c_strLogToken3;
    TOOLKIT_LOG(SeverityDebug) << L"filtered" << ILogger::c_strLogToken3;
    ILogger::ReleaseInstance();

    const std::string text = ReadWholeFile(Path());
    ASSERT_EQ(text.back(), '\n');
    EXPECT_THAT(std::wstring(text.begin(), text.end() - 1),
                IsLogLine(SeverityInfo, 64, L"TestBody", L"kept1"));
}

TEST_F(FileLoggerTest, NamesTheFileAfterTheApplicationByDefault)
{
    const std::filesystem::path path = "/tmp/FileLoggerTest.qvlog";
    std::filesystem::remove_all(path);
    {
        FileLogger logger(SeverityVerbose, L"", c_noLimit);
        logger.Write(L"text");
    }
    EXPECT_EQ(ReadWholeFile(path), "text");
    std::filesystem::remove_all(path);
}

TEST_F(FileLoggerTest, NeedsNoPathManager)
{
    const std::filesystem::path path = "/tmp/FileLoggerTest.qvlog";
    PathManager::ReleaseInstance();

    EXPECT_EQ(FileLogger(SeverityVerbose, L"", c_noLimit).GetPath(c_noLimit),
              L"/tmp/FileLoggerTest.qvlog");
    EXPECT_EQ(UTF8::ToUTF8(FileLogger(SeverityVerbose, Name(), c_noLimit).GetPath(c_noLimit)),
              Path().native());
    std::filesystem::remove_all(path);
}

TEST_F(FileLoggerTest, EncodesTheFileNameInUtf8InAnyLocale)
{
    const TestSupport::ScopedLocale locale("C");
    m_name += "-\xC3\xA9\xE2\x82\xAC";
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"text");
    }
    EXPECT_EQ(ReadWholeFile(Path()), "text");
}

TEST_F(FileLoggerTest, EmptiesAnOldFileAndRestrictsItToItsOwner)
{
    std::ofstream(Path()) << "an old log";
    std::filesystem::permissions(Path(), std::filesystem::perms(0666));

    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"new");
    }
    EXPECT_EQ(ReadWholeFile(Path()), "new");
    EXPECT_EQ(std::filesystem::status(Path()).permissions(), std::filesystem::perms(0600));
}

TEST_F(FileLoggerTest, CreatesAFileThatOnlyItsOwnerCanAccess)
{
    const mode_t oldMask = ::umask(0);
    {
        const FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        Await([this] { return FindOpenFile(Path()).position == 0; });
    }
    ::umask(oldMask);
    EXPECT_EQ(std::filesystem::status(Path()).permissions(), std::filesystem::perms(0600));
}

TEST_F(FileLoggerTest, ClosesTheFileOnExec)
{
    const FileLogger logger(SeverityVerbose, Name(), c_noLimit);

    Await([this] { return FindOpenFile(Path()).position == 0; });
    EXPECT_NE(FindOpenFile(Path()).flags & static_cast<unsigned int>(O_CLOEXEC), 0u);
}

TEST_F(FileLoggerTest, ReturnsThePathOfTheOpenFile)
{
    const FileLogger logger(SeverityVerbose, Name(), c_noLimit);

    EXPECT_EQ(UTF8::ToUTF8(logger.GetPath(c_noLimit)), Path().native());
    EXPECT_NE(FindOpenFile(Path()).position, -1);
}

TEST_F(FileLoggerTest, ReturnsThePathOfAFallbackFile)
{
    std::filesystem::create_directory(Path());
    const FileLogger logger(SeverityVerbose, Name(), c_noLimit);

    const std::string path = UTF8::ToUTF8(logger.GetPath(c_noLimit));

    EXPECT_THAT(path, testing::MatchesRegex("/tmp/" + m_name + "-[0-9]+\\.qvlog"));
    EXPECT_NE(FindOpenFile(path).position, -1);
}

TEST_F(FileLoggerTest, ReturnsNoPathWhileNoFileIsOpen)
{
    const NoDescriptors noDescriptors;
    const FileLogger logger(SeverityVerbose, Name(), c_noLimit);

    EXPECT_EQ(logger.GetPath(0), L"");
    EXPECT_EQ(logger.GetPath(50), L"");
}

TEST_F(FileLoggerTest, WrapsToTheBeginningAtTheLimit)
{
    FileLogger logger(SeverityVerbose, Name(), 100);
    const auto piece = [](char character) { return std::string(30, character); };
    const auto write = [&](char character) {
        logger.Write(std::wstring(30, static_cast<wchar_t>(character)));
    };

    write('a');
    AwaitFile(piece('a'), 30);
    write('b');
    AwaitFile(piece('a') + piece('b'), 60);
    write('c');
    AwaitFile(piece('a') + piece('b') + piece('c'), 90);
    write('d');
    AwaitFile(piece('a') + piece('b') + piece('c') + piece('d'), 0);
    write('e');
    AwaitFile(piece('e') + piece('b') + piece('c') + piece('d'), 30);
}

TEST_F(FileLoggerTest, WrapsExactlyAtTheLimit)
{
    FileLogger logger(SeverityVerbose, Name(), 4);

    logger.Write(L"abc");
    AwaitFile("abc", 3);
    logger.Write(L"d");
    AwaitFile("abcd", 0);
}

TEST_F(FileLoggerTest, StartsEachBatchAtTheBeginningWithALimitOfZero)
{
    FileLogger logger(SeverityVerbose, Name(), 0);

    logger.Write(L"first text");
    AwaitFile("first text", 0);
    logger.Write(L"second");
    AwaitFile("secondtext", 0);
    logger.Write(L"3");
    AwaitFile("3econdtext", 0);
}

TEST_F(FileLoggerTest, ContinuesAtTheEndOfATruncatedFile)
{
    FileLogger logger(SeverityVerbose, Name(), c_noLimit);

    logger.Write(L"a long old text");
    AwaitFile("a long old text", 15);
    std::filesystem::resize_file(Path(), 4);
    logger.Write(L"new");
    AwaitFile("a lonew", 7);
    std::filesystem::resize_file(Path(), 0);
    logger.Write(L"newest");
    AwaitFile("newest", 6);
}

TEST_F(FileLoggerTest, ChecksTheLimitAfterAWholeBatch)
{
    std::optional<NoDescriptors> noDescriptors(std::in_place);
    FileLogger logger(SeverityVerbose, Name(), 4);
    for (const wchar_t* const piece : {L"one ", L"two ", L"three"})
        logger.Write(piece);
    noDescriptors.reset();

    std::vector<std::filesystem::path> files;
    Await([&] {
        files = FindFiles();
        return files.size() == 1 && FindOpenFile(files[0]).position == 0 &&
               ReadWholeFile(files[0]) == "one two three";
    });
    logger.Write(L"four");
    Await([&] { return ReadWholeFile(files[0]) == "fourtwo three"; });
}

TEST_F(FileLoggerTest, WritesAllQueuedTextWhenDestroyed)
{
    std::string expected;
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        for (int i = 0; i < 100000; ++i) {
            logger.Write(std::to_wstring(i));
            expected += std::to_string(i);
        }
    }
    EXPECT_EQ(ReadWholeFile(Path()), expected);
}

TEST_F(FileLoggerTest, WritesTextThatArrivesWhileTheWriterSleeps)
{
    // Each round destroys the logger at a different moment of the writer's wait for text.
    for (int round = 0; round < 5; ++round) {
        {
            FileLogger logger(SeverityVerbose, Name(), c_noLimit);
            Await([this] { return FindOpenFile(Path()).position == 0; });
            std::this_thread::sleep_for(std::chrono::milliseconds(120 * round));
            logger.Write(L"last words");
        }
        EXPECT_EQ(ReadWholeFile(Path()), "last words");
    }
}

TEST_F(FileLoggerTest, WaitsHalfASecondForTextWhenDestroyed)
{
    using namespace std::chrono_literals;
    std::chrono::steady_clock::duration longest{};
    for (int round = 0; round < 3; ++round) {
        auto logger = std::make_unique<FileLogger>(SeverityVerbose, Name(), c_noLimit);
        logger->Write(L"text");
        AwaitFile("text", 4);

        const auto start = std::chrono::steady_clock::now();
        logger.reset();
        longest = std::max(longest, std::chrono::steady_clock::now() - start);
    }
    // The writer may have begun its wait of 500 ms before `start`.
    EXPECT_GE(longest, 350ms);
}

TEST_F(FileLoggerTest, KeepsThePiecesOfAThreadInOrder)
{
    constexpr int threads = 4;
    constexpr int pieces = 5000;
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        std::vector<std::thread> writers;
        for (int id = 0; id < threads; ++id) {
            writers.emplace_back([&logger, id] {
                for (int i = 0; i < pieces; ++i)
                    logger.Write(std::to_wstring(id) + L" " + std::to_wstring(i) + L"\n");
            });
        }
        for (std::thread& writer : writers)
            writer.join();
    }

    std::ifstream file(Path());
    std::vector<int> next(threads);
    int id = 0;
    int number = 0;
    while (file >> id >> number)
        ASSERT_EQ(number, next.at(static_cast<std::size_t>(id))++);
    EXPECT_THAT(next, testing::Each(pieces));
}

TEST_F(FileLoggerTest, LetsSeveralThreadsLogWhileItWraps)
{
    constexpr int threads = 4;
    constexpr int rounds = 2000;
    {
        // All pieces have the same length, so that a wrap overwrites only whole pieces.
        FileLogger logger(SeverityVerbose, Name(), 2000);
        const auto write = [&logger](int id) {
            for (int i = 0; i < rounds; ++i) {
                std::wstring piece = std::to_wstring(100000 * (id + 1) + i) + L"...\n";
                logger.Write(piece);
                if (i % 500 == 499)
                    std::this_thread::sleep_for(std::chrono::milliseconds(250));
            }
        };
        std::vector<std::thread> writers;
        for (int id = 0; id < threads; ++id)
            writers.emplace_back(write, id);
        for (std::thread& writer : writers)
            writer.join();
    }

    const std::string text = ReadWholeFile(Path());
    ASSERT_EQ(text.size() % 10, 0u);
    EXPECT_GE(text.size(), 2000u);
    EXPECT_LT(text.size(), 10u * threads * rounds);
    std::set<std::string> seen;
    for (std::size_t offset = 0; offset < text.size(); offset += 10) {
        const std::string piece = text.substr(offset, 10);
        ASSERT_TRUE(std::regex_match(piece, std::regex("[1-4]0[0-9]{4}\\.\\.\\.\n"))) << piece;
        ASSERT_TRUE(seen.insert(piece).second) << piece;
    }
}

// A model of the file that a logger writes piece by piece.
class LogFileModel {
public:
    explicit LogFileModel(unsigned int limit) : m_limit(limit) {}

    void WriteBatch(const std::vector<std::string>& pieces)
    {
        for (const std::string& piece : pieces) {
            if (m_text.size() < m_position + piece.size())
                m_text.resize(m_position + piece.size());
            m_text.replace(m_position, piece.size(), piece);
            m_position += piece.size();
        }
        if (m_position >= m_limit)
            m_position = 0;
    }

    const std::string& Text() const { return m_text; }
    long Position() const { return static_cast<long>(m_position); }

private:
    std::size_t m_limit;
    std::size_t m_position = 0;
    std::string m_text;
};

// A logger with random text, and the file that it must produce. The first batch is queued before
// the logger can open a file, so that it is one batch; each later batch is a single piece.
class RandomLog {
public:
    RandomLog(const std::string& name, unsigned int seed)
        : m_name(name), m_random(seed), m_limit(m_random.Number(0u, 100000u)), m_expected(m_limit),
          m_logger(SeverityVerbose, UTF8::ToUNICODE(name), m_limit)
    {
        std::vector<std::string> batch(m_random.Number<std::size_t>(1, 5000));
        for (std::string& piece : batch)
            piece = WriteRandomPiece(60);
        m_expected.WriteBatch(batch);
    }

    void WriteNext() { m_expected.WriteBatch({WriteRandomPiece(20000)}); }

    bool IsWritten() const
    {
        for (const auto& entry : std::filesystem::directory_iterator("/tmp")) {
            if (entry.path().filename().native().compare(0, m_name.size(), m_name) == 0)
                return FindOpenFile(entry.path()).position == m_expected.Position() &&
                       ReadWholeFile(entry.path()) == m_expected.Text();
        }
        return false;
    }

private:
    std::string WriteRandomPiece(std::size_t maxLength)
    {
        const std::wstring piece = m_random.Text<wchar_t>(L"abc \n\u00E9\u20AC", maxLength) + L"|";
        m_logger.Write(piece);
        return UTF8::ToUTF8(piece);
    }

    const std::string m_name;
    TestSupport::RandomText m_random;
    const unsigned int m_limit;
    LogFileModel m_expected;
    FileLogger m_logger;
};

TEST_F(FileLoggerTest, MatchesAPieceByPieceModel)
{
    std::optional<NoDescriptors> noDescriptors(std::in_place);
    std::vector<std::unique_ptr<RandomLog>> logs;
    for (unsigned int seed = 0; seed < 8; ++seed)
        logs.push_back(
            std::make_unique<RandomLog>(m_name + "-" + std::to_string(seed) + "-", seed));
    noDescriptors.reset();

    for (int round = 0; round < 15; ++round) {
        SCOPED_TRACE(round);
        for (const auto& log : logs)
            ASSERT_NO_FATAL_FAILURE(Await([&log] { return log->IsWritten(); }));
        for (const auto& log : logs)
            log->WriteNext();
    }
}

} // namespace
} // namespace Toolkit
