#include "toolkit/files/PathManager.h"

#include "support/CapturedLog.h"
#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace Toolkit {
namespace {

using testing::IsEmpty;
using TestSupport::CapturedLog;
using TestSupport::ScopedEnvironment;
using TestSupport::TempDir;

using Wide = TString<wchar_t>;

TEST(PathManagerConstantsTest, NamesTheFolders)
{
    EXPECT_EQ(PathManager::c_strConfigurationFolderName, L"config");
    EXPECT_EQ(PathManager::c_strRessourcesFolderName, L"ressources");
    EXPECT_EQ(PathManager::c_strAppearancesFolderName, L"ressources");
    EXPECT_EQ(PathManager::c_strPluginsFolderName, L"plugins");
    EXPECT_EQ(PathManager::c_strCacheFolderName, L"cache");
}

TEST(PathManagerSingletonTest, ExistsOnlyBetweenCreationAndRelease)
{
    const TempDir home;
    const ScopedEnvironment environment("HOME", home.Path().native());
    EXPECT_EQ(PathManager::s_pInstance, nullptr);
    EXPECT_FALSE(PathManager::GetInstance().IsValid());

    PathManager::CreateInstance();
    EXPECT_TRUE(PathManager::GetInstance().IsValid());
    PathManager::ReleaseInstance();
    EXPECT_EQ(PathManager::s_pInstance, nullptr);
    PathManager::ReleaseInstance();
    EXPECT_FALSE(PathManager::GetInstance().IsValid());
}

TEST(PathManagerSingletonTest, KeepsTheFirstInstanceWhenCreatedAgain)
{
    const TempDir home;
    const ScopedEnvironment environment("HOME", home.Path().native());
    PathManager::CreateInstance();
    const PathManager* const first = PathManager::GetInstance().Get();

    PathManager::CreateInstance();
    EXPECT_EQ(PathManager::GetInstance().Get(), first);
    PathManager::ReleaseInstance();
}

TEST(PathManagerSingletonTest, KeepsAReferencedInstanceAfterTheRelease)
{
    const TempDir home;
    const ScopedEnvironment environment("HOME", home.Path().native());
    PathManager::CreateInstance();
    const smart_ptr<PathManager> copy = PathManager::GetInstance();

    PathManager::ReleaseInstance();
    EXPECT_EQ(copy->GetPathSeparator(), L"/");
}

class PathManagerTest : public testing::Test {
protected:
    PathManagerTest() : m_home("HOME", m_directory.Path().native())
    {
        PathManager::CreateInstance();
        m_manager = PathManager::GetInstance();
    }
    ~PathManagerTest() override { PathManager::ReleaseInstance(); }

    TempDir m_directory;
    ScopedEnvironment m_home;
    smart_ptr<PathManager> m_manager;
};

TEST_F(PathManagerTest, ComposesPathsFromTheStandardDirectories)
{
    EXPECT_EQ(m_manager->GetApplicationName(), L"PathManagerTest");
    EXPECT_EQ(m_manager->GetUserLocalDataDir(), m_directory.File(L".PathManagerTest"));
    EXPECT_EQ(m_manager->GetApplicationDataPath(),
              m_directory.File(L".PathManagerTest/PathManagerTest"));
    EXPECT_EQ(m_manager->GetConfigurationPath(), m_manager->GetDataDir() + L"/config");
    EXPECT_EQ(m_manager->GetApplicationRessourcesPath(), m_manager->GetDataDir() + L"/ressources");
    EXPECT_EQ(m_manager->GetPluginsPath(), m_manager->GetDataDir() + L"/ressources/plugins");
    EXPECT_EQ(m_manager->GetMassStorageDataPath(), L"");
}

TEST_F(PathManagerTest, LooksForAppearancesInTheRessourcesFolder)
{
    EXPECT_EQ(m_manager->GetAppearancesPath(), m_manager->GetApplicationRessourcesPath());
}

TEST_F(PathManagerTest, CreatesTheApplicationDataDirectoryInItsConstructor)
{
    EXPECT_TRUE(
        std::filesystem::is_directory(m_directory.Path() / ".PathManagerTest/PathManagerTest"));
}

TEST_F(PathManagerTest, QueriesUserDirectoriesOnEachCall)
{
    const ScopedEnvironment home("HOME", "/elsewhere");

    EXPECT_EQ(m_manager->GetUserLocalDataDir(), L"/elsewhere/.PathManagerTest");
    EXPECT_EQ(m_manager->GetApplicationDataPath(),
              m_directory.File(L".PathManagerTest/PathManagerTest"));
}

TEST_F(PathManagerTest, ReturnsTheSameTempDirInAnyEnvironment)
{
    const ScopedEnvironment environment("TMPDIR", m_directory.Path().native());

    EXPECT_EQ(m_manager->GetTempDir(), L"/tmp");
}

TEST_F(PathManagerTest, MovesPluginsButNotAppearancesWithTheRessources)
{
    const Wide appearances = m_manager->GetAppearancesPath();
    m_manager->SetApplicationRessourcesPath(L"/opt/tool");

    EXPECT_EQ(m_manager->GetApplicationRessourcesPath(), L"/opt/tool");
    EXPECT_EQ(m_manager->GetPluginsPath(), L"/opt/tool/plugins");
    EXPECT_EQ(m_manager->GetAppearancesPath(), appearances);
}

TEST_F(PathManagerTest, DoesNotNormalizeThePluginsPath)
{
    m_manager->SetApplicationRessourcesPath(L"/opt/tool/");
    EXPECT_EQ(m_manager->GetPluginsPath(), L"/opt/tool//plugins");

    m_manager->SetApplicationRessourcesPath(L"");
    m_manager->RebuildDependentPathes();
    EXPECT_EQ(m_manager->GetPluginsPath(), L"/plugins");
}

TEST_F(PathManagerTest, CreatesTheApplicationDataPathWithItsParents)
{
    const mode_t oldMask = ::umask(022);
    m_manager->SetApplicationDataPath(m_directory.File(L"a/\u6587/c"));
    ::umask(oldMask);

    EXPECT_EQ(m_manager->GetApplicationDataPath(), m_directory.File(L"a/\u6587/c"));
    const std::filesystem::path created = m_directory.Path() / "a/\xE6\x96\x87/c";
    ASSERT_TRUE(std::filesystem::is_directory(created));
    EXPECT_EQ(std::filesystem::status(created).permissions(), std::filesystem::perms(0755));
}

TEST_F(PathManagerTest, KeepsAnApplicationDataPathThatCannotBeCreated)
{
    const CapturedLog log;
    const Wide path = m_directory.WriteFile(L"file", "") + L"/below";
    testing::internal::CaptureStderr();
    m_manager->SetApplicationDataPath(path);

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(log.Lines(), IsEmpty());
    EXPECT_EQ(m_manager->GetApplicationDataPath(), path);
    EXPECT_FALSE(PathManager::Exists(path));
}

TEST_F(PathManagerTest, StoresTheMassStorageDataPathWithoutCreatingIt)
{
    m_manager->SetMassStorageDataPath(m_directory.File(L"mass"));

    EXPECT_EQ(m_manager->GetMassStorageDataPath(), m_directory.File(L"mass"));
    EXPECT_FALSE(PathManager::Exists(m_directory.File(L"mass")));
}

struct JoinCase {
    const wchar_t* left;
    const wchar_t* part;
    const wchar_t* expected;
};

constexpr JoinCase c_joinCases[] = {
    {L"", L"x", L"x"},        {L"dir/", L"x", L"dir/x"}, {L"dir", L"x", L"dir/x"},
    {L"dir", L"", L"dir/"},   {L"a/", L"/b", L"a//b"},   {L"a", L"/b", L"a//b"},
    {L"", L"", L""},          {L"", L"/b", L"/b"},       {L"/", L"b", L"/b"},
    {L"a\\", L"b", L"a\\/b"}, {L"dir/", L"", L"dir/"}};

TEST_F(PathManagerTest, AppendsInPlace)
{
    for (const auto& [left, part, expected] : c_joinCases) {
        Wide path = left;
        PathManager::AppendPath(path, part);
        EXPECT_EQ(path, expected);
    }
}

TEST_F(PathManagerTest, AppendsIntoAResult)
{
    for (const auto& [left, part, expected] : c_joinCases) {
        Wide result = L"old";
        const Wide base = left;
        PathManager::AppendPath(result, base, part);
        EXPECT_EQ(result, expected);
        EXPECT_EQ(base, left);
    }
}

TEST_F(PathManagerTest, AppendsAPathToItself)
{
    Wide path = L"a";
    PathManager::AppendPath(path, path);
    EXPECT_EQ(path, L"a/a");

    PathManager::AppendPath(path, path, path);
    EXPECT_EQ(path, L"a/a/a/a");
}

struct SplitCase {
    const wchar_t* full;
    const wchar_t* path;
    const wchar_t* name;
    const wchar_t* extension;
};

TEST_F(PathManagerTest, SplitsByTheRulesOfTheSystem)
{
    constexpr SplitCase cases[] = {{L"/a/b.tar.gz", L"/a", L"b.tar", L"gz"},
                                   {L"/a/b/", L"/a/b", L"", L""},
                                   {L"name", L"", L"name", L""},
                                   {L"name.", L"", L"name", L""},
                                   {L"/name.ext", L"/", L"name", L"ext"},
                                   {L"/a.b/name", L"/a.b", L"name", L""},
                                   {L"/a/.hidden", L"/a", L".hidden", L""},
                                   {L"C:\\a.b", L"", L"C:\\a", L"b"},
                                   {L"/\u00E9/\u6587.\u00E9", L"/\u00E9", L"\u6587", L"\u00E9"},
                                   {L"", L"", L"", L""}};
    for (const auto& [full, path, name, extension] : cases) {
        SCOPED_TRACE(testing::PrintToString(full));
        std::vector<Wide> parts(4, L"old");
        PathManager::SplitPath(full, parts[0], parts[1], parts[2], parts[3]);
        EXPECT_EQ(parts, (std::vector<Wide>{L"", path, name, extension}));
    }
}

TEST_F(PathManagerTest, AcceptsTheSameStringAsInputAndOutput)
{
    Wide text = L"/a/b.c";
    Wide volume;
    Wide name;
    Wide extension;
    PathManager::SplitPath(text, volume, text, name, extension);

    EXPECT_EQ(text, L"/a");
    EXPECT_EQ(name, L"b");
    EXPECT_EQ(extension, L"c");
}

TEST_F(PathManagerTest, DistinguishesFilesFromDirectories)
{
    m_directory.WriteFile(L"\u6587", "");
    ASSERT_EQ(::mkfifo((m_directory.Path() / "pipe").c_str(), 0600), 0);
    struct {
        Wide path;
        bool exists;
        bool isFile;
        bool isDirectory;
    } const cases[] = {{m_directory.File(L"\u6587"), true, true, false},
                       {m_directory.File(L""), true, false, true},
                       {m_directory.File(L"") + L"/", true, false, true},
                       {m_directory.File(L"missing"), false, false, false},
                       {m_directory.File(L"pipe"), false, false, false},
                       {L"", false, false, false},
                       {static_cast<wchar_t>(0x110000), false, false, false}};
    for (const auto& [path, exists, isFile, isDirectory] : cases) {
        SCOPED_TRACE(testing::PrintToString(path));
        EXPECT_EQ(PathManager::Exists(path), exists);
        EXPECT_EQ(PathManager::FileExists(path), isFile);
        EXPECT_EQ(PathManager::DirExists(path), isDirectory);
    }
}

} // namespace
} // namespace Toolkit
