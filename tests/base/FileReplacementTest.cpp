#include "toolkit/base/FileReplacement.h"

#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace Toolkit::Base {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Toolkit::TestSupport::TempDir;

class FileReplacementTest : public testing::Test {
protected:
    std::string Path(const char* name) const { return m_directory.Path() / name; }

    bool Replace(const char* name) const
    {
        FileReplacement replacement(Path(name));
        return replacement.Write("new", 3) && replacement.Commit();
    }

    mode_t Mode(const char* name) const
    {
        struct stat status {};
        EXPECT_EQ(::stat(Path(name).c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& file : std::filesystem::directory_iterator(m_directory.Path()))
            names.push_back(file.path().filename());
        return names;
    }

    TempDir m_directory;
};

TEST_F(FileReplacementTest, KeepsTheModeOfAFile)
{
    m_directory.WriteFile(L"file", "old");
    for (const mode_t mode : {0600u, 0640u, 0755u}) {
        ASSERT_EQ(::chmod(Path("file").c_str(), mode), 0);
        ASSERT_TRUE(Replace("file"));
        EXPECT_EQ(Mode("file"), mode);
    }
    EXPECT_EQ(m_directory.ReadFile(L"file"), "new");
}

TEST_F(FileReplacementTest, AppliesTheUmaskToANewFile)
{
    const mode_t oldMask = ::umask(0027);
    EXPECT_TRUE(Replace("private"));
    ::umask(0);
    EXPECT_TRUE(Replace("public"));
    ::umask(oldMask);

    EXPECT_EQ(Mode("private"), 0640u);
    EXPECT_EQ(Mode("public"), 0666u);
}

TEST_F(FileReplacementTest, LeavesNoFileWithoutACommit)
{
    {
        FileReplacement replacement(Path("file"));
        EXPECT_TRUE(replacement.Write("new", 3));
    }
    EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(FileReplacementTest, DoesNotReplaceAPipe)
{
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);

    EXPECT_FALSE(Replace("pipe"));
    EXPECT_TRUE(std::filesystem::is_fifo(Path("pipe")));
    EXPECT_THAT(Names(), ElementsAre("pipe"));
}

TEST_F(FileReplacementTest, FailsInAMissingDirectory)
{
    EXPECT_FALSE(Replace("missing/file"));
}

} // namespace
} // namespace Toolkit::Base
