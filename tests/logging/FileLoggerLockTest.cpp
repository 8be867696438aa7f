#include "toolkit/logging/FileLogger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "logging/LogFile.h"

namespace Toolkit {
namespace {

using TestSupport::ReadWholeFile;

constexpr unsigned int c_noLimit = 0xFFFFFFFF;

// Runs another process with a logger named `name` that writes "theirs".
class OtherProcess {
public:
    explicit OtherProcess(const TString<wchar_t>& name)
    {
        int toParent[2];
        int toChild[2];
        EXPECT_EQ(::pipe(toParent), 0);
        EXPECT_EQ(::pipe(toChild), 0);
        m_process = ::fork();
        if (m_process == 0) {
            ::close(toChild[1]);
            Log(name, toParent[1], toChild[0]);
        }
        ::close(toParent[1]);
        ::close(toChild[0]);
        m_stopPipe = toChild[1];
        char ready = 0;
        EXPECT_EQ(::read(toParent[0], &ready, 1), 1);
        ::close(toParent[0]);
    }
    ~OtherProcess() { End(); }

    // Destroys the logger and ends the process.
    void End()
    {
        if (m_stopPipe < 0)
            return;
        ::close(m_stopPipe);
        m_stopPipe = -1;
        int status = -1;
        EXPECT_EQ(::waitpid(m_process, &status, 0), m_process);
        EXPECT_EQ(status, 0);
    }

private:
    [[noreturn]] static void Log(const TString<wchar_t>& name, int ready, int stop)
    {
        {
            FileLogger logger(SeverityVerbose, name, c_noLimit);
            logger.Write(L"theirs");
            if (logger.GetPath(c_noLimit).empty() || ::write(ready, "", 1) != 1)
                std::abort();
            char byte = 0;
            if (::read(stop, &byte, 1) != 0)
                std::abort();
        }
        ::_exit(0);
    }

    pid_t m_process = -1;
    int m_stopPipe = -1;
};

class FileLoggerLockTest : public TestSupport::LogFileTest {
protected:
    // Whether the lock on the log file is free.
    bool CanBeLocked() const
    {
        const int file = ::open(Path().c_str(), O_RDONLY);
        EXPECT_GE(file, 0);
        const bool wasFree = ::flock(file, LOCK_EX | LOCK_NB) == 0;
        ::close(file);
        return wasFree;
    }
};

TEST_F(FileLoggerLockTest, KeepsTheTextOfTwoProcessesApart)
{
    OtherProcess other(Name());
    TString<wchar_t> path;
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"ours");
        path = logger.GetPath(c_noLimit);
    }
    other.End();

    EXPECT_THAT(UTF8::ToUTF8(path), testing::MatchesRegex("/tmp/" + m_name + "-[0-9]+\\.qvlog"));
    EXPECT_EQ(ReadWholeFile(UTF8::ToUTF8(path)), "ours");
    EXPECT_EQ(ReadWholeFile(Path()), "theirs");
}

TEST_F(FileLoggerLockTest, WaitsTwoSecondsForALockedFile)
{
    const OtherProcess other(Name());

    const auto start = std::chrono::steady_clock::now();
    const FileLogger logger(SeverityVerbose, Name(), c_noLimit);
    EXPECT_NE(logger.GetPath(c_noLimit), L"");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1900));
}

TEST_F(FileLoggerLockTest, OpensItsFileWhenTheOtherProcessEnds)
{
    OtherProcess other(Name());
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"ours");
        EXPECT_EQ(logger.GetPath(50), L"");
        other.End();
        EXPECT_EQ(UTF8::ToUTF8(logger.GetPath(c_noLimit)), Path().native());
    }
    EXPECT_EQ(ReadWholeFile(Path()), "ours");
}

TEST_F(FileLoggerLockTest, WritesItsQueueAtOnceWhenStoppedWhileWaiting)
{
    const OtherProcess other(Name());
    auto logger = std::make_unique<FileLogger>(SeverityVerbose, Name(), c_noLimit);
    logger->Write(L"ours");

    const auto start = std::chrono::steady_clock::now();
    logger.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1900));

    std::vector<std::filesystem::path> files = FindFiles();
    std::erase(files, Path());
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(ReadWholeFile(files.front()), "ours");
}

TEST_F(FileLoggerLockTest, SharesTheFileAmongLoggersOfOneProcess)
{
    const FileLogger first(SeverityVerbose, Name(), c_noLimit);
    EXPECT_EQ(UTF8::ToUTF8(first.GetPath(c_noLimit)), Path().native());

    const FileLogger second(SeverityVerbose, Name(), c_noLimit);
    EXPECT_EQ(UTF8::ToUTF8(second.GetPath(c_noLimit)), Path().native());
}

TEST_F(FileLoggerLockTest, ReleasesTheLockWhenTheLastLoggerIsDestroyed)
{
    auto first = std::make_unique<FileLogger>(SeverityVerbose, Name(), c_noLimit);
    EXPECT_NE(first->GetPath(c_noLimit), L"");
    auto second = std::make_unique<FileLogger>(SeverityVerbose, Name(), c_noLimit);
    EXPECT_NE(second->GetPath(c_noLimit), L"");

    first.reset();
    EXPECT_FALSE(CanBeLocked());
    second.reset();
    EXPECT_TRUE(CanBeLocked());
}

TEST_F(FileLoggerLockTest, DoesNotKeepTheLockInAForkedChild)
{
    auto logger = std::make_unique<FileLogger>(SeverityVerbose, Name(), c_noLimit);
    EXPECT_NE(logger->GetPath(c_noLimit), L"");
    int end[2];
    ASSERT_EQ(::pipe(end), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        char byte = 0;
        ::close(end[1]);
        ::_exit(::read(end[0], &byte, 1) == 0 ? 0 : 1);
    }
    ::close(end[0]);

    EXPECT_FALSE(CanBeLocked());
    logger.reset();
    EXPECT_TRUE(CanBeLocked());
    ::close(end[1]);
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(FileLoggerLockTest, CreatesANewFileWhenALockedFileIsRemoved)
{
    OtherProcess other(Name());
    {
        FileLogger logger(SeverityVerbose, Name(), c_noLimit);
        logger.Write(L"ours");
        std::filesystem::remove(Path());
        EXPECT_EQ(UTF8::ToUTF8(logger.GetPath(c_noLimit)), Path().native());
    }
    EXPECT_EQ(ReadWholeFile(Path()), "ours");
}

} // namespace
} // namespace Toolkit
