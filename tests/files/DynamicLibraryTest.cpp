#include "toolkit/files/DynamicLibrary.h"

#include "toolkit/encoding/UTF8.h"

#include "support/ScopedLocale.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <filesystem>
#include <utility>

namespace Toolkit {
namespace {

using TestSupport::ScopedLocale;
using TestSupport::TempDir;

// Gives each test its own copy of the probe library, because dlopen(3) does not load a file twice.
class DynamicLibraryTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::filesystem::copy_file(PROBE_LIBRARY, m_directory.Path() / "probe.so");
    }

    void CountUnloads(const DynamicLibrary& library)
    {
        using Function = void (*)(int*);
        reinterpret_cast<Function>(library.GetSymbol(L"ProbeCountUnloads"))(&m_unloadCount);
    }

    TString<wchar_t> ProbePath() const { return m_directory.File(L"probe.so"); }

    const TempDir m_directory;
    int m_unloadCount = 0;
};

TEST_F(DynamicLibraryTest, FindsTheSymbolsOfALibrary)
{
    const DynamicLibrary library(ProbePath());

    using Function = int (*)();
    const auto answer = reinterpret_cast<Function>(library.GetSymbol(L"ProbeAnswer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
}

TEST_F(DynamicLibraryTest, OffersItsSymbolsToTheWholeProcess)
{
    ASSERT_EQ(::dlsym(RTLD_DEFAULT, "ProbeAnswer"), nullptr);

    const DynamicLibrary library(ProbePath());

    EXPECT_EQ(::dlsym(RTLD_DEFAULT, "ProbeAnswer"), library.GetSymbol(L"ProbeAnswer"));
}

TEST_F(DynamicLibraryTest, AddsThePlatformExtension)
{
    const DynamicLibrary library(m_directory.File(L"probe"));

    EXPECT_NE(library.GetSymbol(L"ProbeAnswer"), nullptr);
}

TEST_F(DynamicLibraryTest, ReturnsNullWithoutAMessageForUnknownSymbols)
{
    const DynamicLibrary library(ProbePath());

    testing::internal::CaptureStderr();
    EXPECT_EQ(library.GetSymbol(L"ProbeQuestion"), nullptr);
    EXPECT_EQ(library.GetSymbol(L""), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DynamicLibraryTest, ReturnsNullWithoutALibrary)
{
    DynamicLibrary library;

    EXPECT_EQ(library.GetSymbol(L"ProbeAnswer"), nullptr);
    EXPECT_EQ(library.Detach(), nullptr);
}

TEST_F(DynamicLibraryTest, ReturnsNullWithoutAMessageWhenNotLoaded)
{
    testing::internal::CaptureStderr();
    for (const TString<wchar_t>& name :
         {m_directory.File(L"missing.so"), m_directory.WriteFile(L"text.so", "not a library"),
          m_directory.File(L""), TString<wchar_t>()}) {
        DynamicLibrary library(name);
        EXPECT_EQ(library.GetSymbol(L"ProbeAnswer"), nullptr);
        EXPECT_EQ(library.Detach(), nullptr);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DynamicLibraryTest, ReportsWhyALibraryWasNotLoaded)
{
    const ScopedLocale locale("C");
    const std::pair<TString<wchar_t>, const char*> cases[] = {
        {m_directory.File(L"missing.so"), "cannot open shared object file"},
        {m_directory.WriteFile(L"te\u00E9t.so", "not a library"), "file too short"},
        {std::filesystem::path(UNRESOLVED_LIBRARY).wstring(), "undefined symbol"}};

    for (const auto& [name, reason] : cases) {
        const TString<wchar_t> error = DynamicLibrary(name).GetError();
        EXPECT_TRUE(error.HasSubstring(name)) << UTF8::ToUTF8(error);
        EXPECT_TRUE(error.HasSubstring(UTF8::ToUNICODE(reason))) << UTF8::ToUTF8(error);
    }
}

TEST_F(DynamicLibraryTest, RejectsANameWithAnInvalidCharacter)
{
    DynamicLibrary library(TString<wchar_t>(static_cast<wchar_t>(0x110000)));

    EXPECT_EQ(library.GetError(), L"invalid name");
    EXPECT_EQ(library.Detach(), nullptr);
}

TEST_F(DynamicLibraryTest, ReportsNoErrorWhenLoadedOrWithoutAName)
{
    EXPECT_EQ(DynamicLibrary().GetError(), L"");
    EXPECT_EQ(DynamicLibrary(L"").GetError(), L"");
    EXPECT_EQ(DynamicLibrary(ProbePath()).GetError(), L"");
}

TEST_F(DynamicLibraryTest, DoesNotLoadALibraryWithAMissingSymbol)
{
    testing::internal::CaptureStderr();
    DynamicLibrary library(std::filesystem::path(UNRESOLVED_LIBRARY).wstring());

    EXPECT_EQ(library.GetSymbol(L"UnresolvedCall"), nullptr);
    EXPECT_EQ(library.Detach(), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DynamicLibraryTest, DoesNotAddAnExtensionToANameThatHasOne)
{
    std::filesystem::rename(m_directory.Path() / "probe.so", m_directory.Path() / "probe.plugin");

    EXPECT_NE(DynamicLibrary(m_directory.File(L"probe.plugin")).GetSymbol(L"ProbeAnswer"), nullptr);
    EXPECT_EQ(DynamicLibrary(m_directory.File(L"probe")).GetSymbol(L"ProbeAnswer"), nullptr);
}

TEST_F(DynamicLibraryTest, UnloadsTheLibraryInItsDestructor)
{
    {
        const DynamicLibrary library(ProbePath());
        CountUnloads(library);
        EXPECT_EQ(m_unloadCount, 0);
    }
    EXPECT_EQ(m_unloadCount, 1);
}

TEST_F(DynamicLibraryTest, KeepsADetachedLibraryLoadedUntilUnload)
{
    void* handle = nullptr;
    {
        DynamicLibrary library(ProbePath());
        CountUnloads(library);
        handle = library.Detach();
        EXPECT_EQ(library.GetSymbol(L"ProbeAnswer"), nullptr);
    }
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(m_unloadCount, 0);

    DynamicLibrary::Unload(handle);
    EXPECT_EQ(m_unloadCount, 1);
}

TEST_F(DynamicLibraryTest, IgnoresNullPassedToUnload)
{
    EXPECT_NO_THROW(DynamicLibrary::Unload(nullptr));
}

TEST_F(DynamicLibraryTest, LoadsALibraryWithANonAsciiNameInTheCLocale)
{
    const ScopedLocale locale("C");
    std::filesystem::copy_file(PROBE_LIBRARY, m_directory.Path() / "pr\xC3\xB6"
                                                                   "be.so");

    const DynamicLibrary library(m_directory.File(L"pr\u00F6be.so"));

    EXPECT_NE(library.GetSymbol(L"ProbeAnswer"), nullptr);
}

} // namespace
} // namespace Toolkit
