#include "toolkit/module/Load.h"

#include "toolkit/config/CmdLineParser.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/logging/FileLogger.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/system/RestartManagment.h"

#include "support/RunProgram.h"

#include <gtest/gtest.h>

#include <utility>

namespace Toolkit {
namespace {

using TestSupport::ProgramResult;
using TestSupport::RunProgram;

TEST(LoadTest, InitializesTheConstants)
{
    const std::pair<const TString<wchar_t>*, const wchar_t*> cases[] = {
        {&FileLogger::c_strTickSeparator, L"-"},
        {&FileLogger::c_strLogExtension, L".qvlog"},
        {&FileLogger::c_strOpenMode, L"w"},
        {&ILogger::c_strLogToken1, L" "},
        {&ILogger::c_strLogToken2, L" : "},
        {&ILogger::c_strLogToken3, L"\n"},
        {&CmdLineParser::c_strSeparators, L" \t"},
        {&CmdLineParser::c_strIdentifiers, L"-"},
        {&CmdLineParser::c_strDelimiters, L"\""},
        {&PathManager::c_strConfigurationFolderName, L"config"},
        {&PathManager::c_strRessourcesFolderName, L"ressources"},
        {&PathManager::c_strAppearancesFolderName, L"ressources"},
        {&PathManager::c_strPluginsFolderName, L"plugins"},
        {&PathManager::c_strCacheFolderName, L"cache"},
        {&RestartManagment::c_strUniqueIdentifer, L"{3F8A1C2D-7B4E-4d19-A6C5-0E9D2B7F4A31}"},
    };
    for (const auto& [constant, expected] : cases)
        EXPECT_EQ(*constant, expected);
}

TEST(LoadTest, KeepsTheRegistryWhenLoadedTwice)
{
    LibModuleManager* const registry = LibModuleManager::GetInstance();

    DllToolkitLoad();

    EXPECT_EQ(LibModuleManager::GetInstance(), registry);
}

TEST(LoadTest, HasNoRegistryBetweenUnloadAndTheNextLoad)
{
    DllToolkitUnload();
    DllToolkitUnload();
    EXPECT_EQ(LibModuleManager::GetInstance(), nullptr);

    DllToolkitLoad();

    ASSERT_NE(LibModuleManager::GetInstance(), nullptr);
    LibModuleManager::GetInstance()->Initialize(true);
    EXPECT_NE(ILogger::s_pInstance, nullptr);
    LibModuleManager::GetInstance()->Release(true);
}

TEST(LoadTest, ReleasesTheModulesAtUnloadIfTheHostDidNot)
{
    LibModuleManager::GetInstance()->Initialize(false);

    DllToolkitUnload();

    EXPECT_EQ(ILogger::s_pInstance, nullptr);
    DllToolkitLoad();
}

TEST(LoadTest, UnloadsWithoutARegistry)
{
    LibModuleManager::ReleaseInstance();

    DllToolkitUnload();
    DllToolkitLoad();

    EXPECT_NE(LibModuleManager::GetInstance(), nullptr);
}

TEST(LoadTest, ConstructsObjectsInOrderAndDestroysThemInReverse)
{
    const ProgramResult result = RunProgram(TOOLKIT_TEST_SEQUENCE_PROGRAM, {});

    EXPECT_EQ(result.output, "load: .qvlog config ressources ressources plugins cache "
                             "{3F8A1C2D-7B4E-4d19-A6C5-0E9D2B7F4A31} registry\n"
                             "unload: registry {3F8A1C2D-7B4E-4d19-A6C5-0E9D2B7F4A31} cache "
                             "plugins ressources ressources config .qvlog");
}

TEST(LoadTest, ConstructsTheConstantsBeforeStaticObjectsOfAProgram)
{
    for (const char* const program : {TOOLKIT_TEST_CONSTANTS_PROGRAMS}) {
        SCOPED_TRACE(program);
        const ProgramResult result = RunProgram(program, {});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.output, "constructed\ndestroyed\n");
        EXPECT_EQ(result.errors, "");
    }
}

#ifdef TOOLKIT_TEST_UNLOAD_PROGRAM
TEST(LoadTest, LoadsAgainAfterAnUnload)
{
    const ProgramResult result = RunProgram(TOOLKIT_TEST_UNLOAD_PROGRAM, {TOOLKIT_TEST_LIBRARY});

    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "loaded\nregistry deleted\nunloaded\n"
                             "loaded\nregistry deleted\nunloaded\n");
}

TEST(LoadTest, PassesExceptionsBetweenHostAndPlugIn)
{
    for (const char* const plugIn : {TOOLKIT_TEST_PLUG_INS}) {
        SCOPED_TRACE(plugIn);
        const ProgramResult result = RunProgram(TOOLKIT_TEST_PLUG_IN_HOST, {plugIn});
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.output, "host caught 1.2.3.4\nplug-in caught 5.6.7.8\n");
    }
}
#endif

} // namespace
} // namespace Toolkit
