#include "toolkit/base/FileDescriptor.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <future>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace Toolkit::Base {
namespace {

using Toolkit::TestSupport::TempDir;

class FileDescriptorTest : public testing::Test {
protected:
    // Writes `bytes` to a file and returns its path.
    std::string WriteFile(const std::string& bytes) const
    {
        m_directory.WriteFile(L"file", bytes);
        return m_directory.Path() / "file";
    }

    std::string CreatePipe() const
    {
        std::string path = m_directory.Path() / "pipe";
        EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
        return path;
    }

    TempDir m_directory;
};

int GetStatusFlags(const FileDescriptor& file)
{
    return ::fcntl(file.Get(), F_GETFL);
}

TEST_F(FileDescriptorTest, DoesNotOpenADirectory)
{
    for (const int flags : {O_RDONLY, O_WRONLY, O_RDWR}) {
        EXPECT_FALSE(FileDescriptor::Open(m_directory.Path(), flags).IsOpen());
        EXPECT_FALSE(FileDescriptor::OpenRegular(m_directory.Path(), flags).IsOpen());
    }
}

TEST_F(FileDescriptorTest, WaitsForTheOtherEndOfAPipe)
{
    const std::string path = CreatePipe();
    const auto writer = std::async(std::launch::async, [&path] {
        return FileDescriptor::Open(path, O_WRONLY).WriteAll("text", 4);
    });
    const FileDescriptor file = FileDescriptor::Open(path, O_RDONLY);
    char bytes[4];

    EXPECT_TRUE(file.ReadAll(bytes, 4));
    EXPECT_EQ(file.Read(bytes, 4), 0);
    EXPECT_EQ(file.GetLength(), 0);
    EXPECT_FALSE(file.IsRegular());
}

TEST_F(FileDescriptorTest, RejectsPipesAndDevicesInOpenRegularWithoutBlocking)
{
    const std::string path = CreatePipe();

    EXPECT_FALSE(FileDescriptor::OpenRegular(path, O_RDONLY).IsOpen());
    EXPECT_FALSE(FileDescriptor::OpenRegular("/dev/null", O_RDWR).IsOpen());
}

TEST_F(FileDescriptorTest, OpensFilesInBlockingMode)
{
    const std::string path = WriteFile("text");

    EXPECT_EQ(GetStatusFlags(FileDescriptor::Open(path, O_RDONLY)) & O_NONBLOCK, 0);
    EXPECT_EQ(GetStatusFlags(FileDescriptor::OpenRegular(path, O_RDONLY)) & O_NONBLOCK, 0);
}

TEST_F(FileDescriptorTest, AppliesTheFlagsPassedToOpenRegular)
{
    const FileDescriptor file =
        FileDescriptor::OpenRegular(WriteFile("text"), O_WRONLY | O_CREAT | O_APPEND);

    EXPECT_EQ(GetStatusFlags(file) & (O_ACCMODE | O_APPEND), O_WRONLY | O_APPEND);
    EXPECT_EQ(::fcntl(file.Get(), F_GETFD), FD_CLOEXEC);
}

TEST_F(FileDescriptorTest, ReadsTheRemainingBytesBeforeReadAllFails)
{
    const FileDescriptor file = FileDescriptor::Open(WriteFile("text"), O_RDONLY);
    char bytes[7] = "------";

    EXPECT_FALSE(file.ReadAll(bytes, 6));
    EXPECT_STREQ(bytes, "text--");
}

TEST_F(FileDescriptorTest, DoesNotMoveThePositionInReadAt)
{
    const FileDescriptor file = FileDescriptor::Open(WriteFile("text"), O_RDONLY);
    char byte = '-';

    EXPECT_EQ(file.ReadAt(2, &byte, 1), 1);
    EXPECT_EQ(byte, 'x');
    EXPECT_TRUE(file.ReadAll(&byte, 1));
    EXPECT_EQ(byte, 't');
}

TEST_F(FileDescriptorTest, FailsToReadAndWriteWhenClosed)
{
    const FileDescriptor file;
    char byte = '-';

    EXPECT_FALSE(file.IsRegular());
    EXPECT_EQ(file.GetLength(), 0);
    EXPECT_EQ(file.Read(&byte, 1), -1);
    EXPECT_FALSE(file.WriteAll("a", 1));
}

} // namespace
} // namespace Toolkit::Base
