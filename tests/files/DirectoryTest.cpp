#include "toolkit/files/Directory.h"

#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/PathManager.h"

#include "support/OutOfMemory.h"
#include "support/ScopedLocale.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using TestSupport::ScopedLocale;
using TestSupport::TempDir;

using Names = std::vector<TString<wchar_t>>;

class DirectoryTest : public testing::Test {
protected:
    void SetUp() override { PathManager::CreateInstance(); }
    void TearDown() override { PathManager::ReleaseInstance(); }

    void AddDirectory(const std::string& name) const
    {
        std::filesystem::create_directory(m_directory.Path() / name);
    }

    void AddFile(const std::string& name) const { std::ofstream(m_directory.Path() / name) << "x"; }

    Names ListDirectories(const wchar_t* fileSpec) const
    {
        Names names{L"old"};
        const unsigned int count = Directory(m_directory.File(L"")).GetDirectories(fileSpec, names);
        EXPECT_EQ(count, names.size());
        return names;
    }

    Names ListFiles(const wchar_t* fileSpec) const
    {
        Names names{L"old"};
        const unsigned int count = Directory(m_directory.File(L"")).GetFiles(fileSpec, names);
        EXPECT_EQ(count, names.size());
        return names;
    }

    Names ListBoth(const wchar_t* fileSpec) const
    {
        Names names{L"old"};
        const unsigned int count = Directory::EnumFilePaths(names, m_directory.File(L""), fileSpec);
        EXPECT_EQ(count, names.size());
        return names;
    }

    const TempDir m_directory;
};

TEST_F(DirectoryTest, ListsFilesAndDirectoriesSeparatelyOrTogether)
{
    AddDirectory("sub");
    AddFile("a.txt");
    AddFile("b.log");

    EXPECT_THAT(ListDirectories(L""), ElementsAre(L"sub"));
    EXPECT_THAT(ListFiles(L""), UnorderedElementsAre(L"a.txt", L"b.log"));
    EXPECT_THAT(ListBoth(L""), UnorderedElementsAre(L"sub", L"a.txt", L"b.log"));
}

TEST_F(DirectoryTest, SelectsNamesByWildcards)
{
    for (const char* const name : {"a.txt", "ab.txt", "b.log", "c"})
        AddFile(name);

    EXPECT_THAT(ListFiles(L"*.txt"), UnorderedElementsAre(L"a.txt", L"ab.txt"));
    EXPECT_THAT(ListFiles(L"?.*"), UnorderedElementsAre(L"a.txt", L"b.log"));
    EXPECT_THAT(ListFiles(L"c"), ElementsAre(L"c"));
    EXPECT_THAT(ListFiles(L"*"), UnorderedElementsAre(L"a.txt", L"ab.txt", L"b.log", L"c"));
    EXPECT_THAT(ListFiles(L"x*"), IsEmpty());
}

TEST_F(DirectoryTest, OmitsHiddenEntries)
{
    AddFile(".hidden");
    AddDirectory(".directory");

    EXPECT_THAT(ListBoth(L""), IsEmpty());
    EXPECT_THAT(ListBoth(L"*"), IsEmpty());
    EXPECT_THAT(ListBoth(L".*"), IsEmpty());
}

TEST_F(DirectoryTest, DoesNotDescendIntoSubdirectories)
{
    AddDirectory("sub");
    AddFile("sub/inner.txt");

    EXPECT_THAT(ListBoth(L""), ElementsAre(L"sub"));
}

TEST_F(DirectoryTest, TreatsLinksLikeTheirTargets)
{
    AddDirectory("sub");
    AddFile("file");
    std::filesystem::create_symlink("sub", m_directory.Path() / "toDirectory");
    std::filesystem::create_symlink("file", m_directory.Path() / "toFile");
    std::filesystem::create_symlink("nowhere", m_directory.Path() / "broken");

    EXPECT_THAT(ListDirectories(L""), UnorderedElementsAre(L"sub", L"toDirectory"));
    EXPECT_THAT(ListFiles(L""), UnorderedElementsAre(L"file", L"toFile", L"broken"));
}

TEST_F(DirectoryTest, ListsNonAsciiNamesInAnyLocale)
{
    AddFile("\xC3\xA9t\xC3\xA9");
    AddFile("\xE9");
    for (const char* const name : {"C", "C.UTF-8"}) {
        const ScopedLocale locale(name);
        EXPECT_THAT(ListFiles(L""), UnorderedElementsAre(L"\u00E9t\u00E9", L"\u00E9")) << name;
    }
}

TEST_F(DirectoryTest, ListsNothingForAMissingDirectory)
{
    Names names{L"old"};

    EXPECT_EQ(Directory(m_directory.File(L"missing")).GetFiles(L"", names), 0u);
    EXPECT_THAT(names, IsEmpty());
}

TEST_F(DirectoryTest, ListsManyEntries)
{
    constexpr unsigned int count = 100'000;
    for (unsigned int i = 0; i < count; ++i)
        ASSERT_EQ(::mknod((m_directory.Path() / std::to_string(i)).c_str(), S_IFREG | 0600, 0), 0);
    Names names;

    EXPECT_EQ(Directory::EnumFilePaths(names, m_directory.File(L""), L""), count);
}

TEST_F(DirectoryTest, ListsTheApplicationsDirectoryForAnEmptyPath)
{
    Names names;
    Directory(L"").GetFiles(PathManager::GetInstance()->GetApplicationName() + L"*", names);

    EXPECT_THAT(names, testing::Contains(PathManager::GetInstance()->GetApplicationName()));
}

TEST_F(DirectoryTest, MatchesWildcardsLiterallyAfterABackslash)
{
    for (const char* const name : {"a*b", "axb", "a?b", "[a]"})
        AddFile(name);

    EXPECT_THAT(ListFiles(L"a\\*b"), ElementsAre(L"a*b"));
    EXPECT_THAT(ListFiles(L"a\\?b"), ElementsAre(L"a?b"));
    EXPECT_THAT(ListFiles(L"[a]"), ElementsAre(L"[a]"));
    EXPECT_THAT(ListFiles(L"a\\"), IsEmpty());
}

TEST_F(DirectoryTest, TreatsAPipeAsAFile)
{
    ASSERT_EQ(::mkfifo((m_directory.Path() / "pipe").c_str(), 0600), 0);

    EXPECT_THAT(ListFiles(L""), ElementsAre(L"pipe"));
    EXPECT_THAT(ListDirectories(L""), IsEmpty());
}

TEST_F(DirectoryTest, AcceptsAPathWithOrWithoutATrailingSeparator)
{
    AddFile("file");
    for (const wchar_t* const end : {L"", L"/", L"//", L"/."}) {
        Names names;
        EXPECT_EQ(Directory(m_directory.File(L"") + end).GetFiles(L"", names), 1u);
        EXPECT_THAT(names, ElementsAre(L"file"));
        EXPECT_TRUE(Directory::Exist(m_directory.File(L"") + end));
    }
}

TEST_F(DirectoryTest, ListsNothingForAnEmptyPathWithoutAPathManager)
{
    PathManager::ReleaseInstance();
    Names names{L"old"};

    EXPECT_EQ(Directory(L"").GetFiles(L"", names), 0u);
    EXPECT_THAT(names, IsEmpty());
    EXPECT_EQ(Directory::EnumFilePaths(names, L"", L""), 0u);
}

TEST_F(DirectoryTest, AcceptsAnElementOfTheResultAsAnArgument)
{
    AddFile("file");
    Names names{m_directory.File(L"")};

    EXPECT_EQ(Directory::EnumFilePaths(names, names[0], L""), 1u);
    EXPECT_THAT(names, ElementsAre(L"file"));
    EXPECT_EQ(Directory(m_directory.File(L"")).GetFiles(names[0], names), 1u);
}

TEST_F(DirectoryTest, PrintsNothingWhenItFails)
{
    AddFile("file");
    Names names;

    testing::internal::CaptureStderr();
    Directory(m_directory.File(L"missing")).GetFiles(L"*", names);
    Directory::EnumFilePaths(names, m_directory.File(L"file"), L"");
    Directory::Create(m_directory.File(L"file/below"));
    Directory::RemoveFile(m_directory.File(L"missing"));
    Directory::RemoveFile(L"");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DirectoryTest, ListsNothingWhenOutOfMemory)
{
    for (const char* const name : {"a", "b", "a name that is longer than the others"})
        AddFile(name);
    const TString<wchar_t> path = m_directory.File(L"");
    bool hasFailed = true;
    for (long index = 0; hasFailed; ++index) {
        SCOPED_TRACE(index);
        Names names;
        TestSupport::FailingAllocation failing(index);
        const unsigned int count = Directory::EnumFilePaths(names, path, L"");
        hasFailed = failing.HasFailed();
        ASSERT_EQ(count, hasFailed ? 0u : 3u);
        ASSERT_EQ(names.size(), count);
    }
}

TEST_F(DirectoryTest, CreatesADirectoryWithItsParents)
{
    EXPECT_TRUE(Directory::Create(m_directory.File(L"a/b/c")));
    EXPECT_TRUE(Directory::Create(m_directory.File(L"d/e/")));

    EXPECT_TRUE(Directory::Exist(m_directory.File(L"a/b/c")));
    EXPECT_TRUE(Directory::Exist(m_directory.File(L"d/e")));
    EXPECT_THAT(ListBoth(L""), UnorderedElementsAre(L"a", L"d"));
}

TEST_F(DirectoryTest, AppliesTheUmaskToNewDirectories)
{
    const mode_t oldMask = ::umask(027);
    const bool isCreated = Directory::Create(m_directory.File(L"a"));
    ::umask(oldMask);

    struct stat status {};
    ::stat((m_directory.Path() / "a").c_str(), &status);
    EXPECT_TRUE(isCreated);
    EXPECT_EQ(status.st_mode & 0777u, 0750u);
}

TEST_F(DirectoryTest, SucceedsInCreatingAnExistingDirectory)
{
    EXPECT_TRUE(Directory::Create(m_directory.File(L"")));
}

TEST_F(DirectoryTest, ReturnsFalseWhenADirectoryCannotBeCreated)
{
    AddFile("file");

    EXPECT_FALSE(Directory::Create(L""));
    EXPECT_FALSE(Directory::Create(m_directory.File(L"file")));
    EXPECT_FALSE(Directory::Create(m_directory.File(L"file/below")));
}

TEST_F(DirectoryTest, ReportsOnlyDirectoriesAsExisting)
{
    AddFile("file");

    EXPECT_TRUE(Directory::Exist(m_directory.File(L"")));
    EXPECT_FALSE(Directory::Exist(m_directory.File(L"file")));
    EXPECT_FALSE(Directory::Exist(m_directory.File(L"missing")));
    EXPECT_FALSE(Directory::Exist(L""));
}

TEST_F(DirectoryTest, RemovesAFile)
{
    AddFile("file");

    EXPECT_TRUE(Directory::RemoveFile(m_directory.File(L"file")));
    EXPECT_FALSE(PathManager::FileExists(m_directory.File(L"file")));
    EXPECT_FALSE(Directory::RemoveFile(m_directory.File(L"file")));
}

TEST_F(DirectoryTest, DoesNotRemoveADirectoryWithRemoveFile)
{
    AddDirectory("sub");

    EXPECT_FALSE(Directory::RemoveFile(m_directory.File(L"sub")));
    EXPECT_TRUE(Directory::Exist(m_directory.File(L"sub")));
}

TEST_F(DirectoryTest, RemovesALinkButNotItsTarget)
{
    AddFile("file");
    std::filesystem::create_symlink("file", m_directory.Path() / "link");

    EXPECT_TRUE(Directory::RemoveFile(m_directory.File(L"link")));
    EXPECT_THAT(ListFiles(L""), ElementsAre(L"file"));
}

} // namespace
} // namespace Toolkit
