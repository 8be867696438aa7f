#include "toolkit/archive/ArchiveZip.h"

#include "support/RunProgram.h"
#include "support/ScopedEnvironment.h"
#include "support/ScopedLocale.h"
#include "support/ScopedTimeZone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wx/zipstrm.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>

#include "archive/ArchiveFixture.h"

namespace Toolkit {
namespace {

using testing::ElementsAre;
using TestSupport::RunProgram;
using TestSupport::ScopedEnvironment;
using TestSupport::ScopedLocale;
using TestSupport::ScopedTimeZone;

// Reads archives that zip and Python create.
class ArchiveZipToolsTest : public TestSupport::ArchiveFixture {
protected:
    void SetUp() override
    {
        std::filesystem::create_directory(m_directory.Path() / "sub");
        m_directory.WriteFile(L"long.txt", m_longText);
        m_directory.WriteFile(L"sub/short.txt", "short");
    }

    void Run(const std::string& command) const
    {
        const TestSupport::ProgramResult result =
            RunProgram("/bin/sh", {"-c", "cd '" + m_directory.Path().native() + "' && " + command});
        EXPECT_EQ(result.exitCode, 0) << command << "\n" << result.output << result.errors;
    }

    // Runs Python statements in which `z` is archive.zip, opened with `mode`.
    void RunPython(const std::string& statements, const std::string& mode = "w") const
    {
        m_directory.WriteFile(L"write.py", "import zipfile\n"
                                           "with zipfile.ZipFile('archive.zip', '" +
                                               mode + "') as z:\n    " + statements + "\n");
        Run("python3 write.py");
    }

    // Checks that the archive contains exactly what SetUp() creates.
    void ExpectFiles()
    {
        EXPECT_THAT(ListNames(Path()), ElementsAre(L"long.txt", L"sub/", L"sub/short.txt"));
        EXPECT_TRUE(m_entries[L"sub/"]->IsDir());
        EXPECT_EQ(ReadBytes(L"sub/short.txt"), "short");
        EXPECT_EQ(ReadBytes(L"long.txt"), m_longText);
        TString<wchar_t> line;
        EXPECT_TRUE(StreamAt(L"long.txt").ReadLine(line));
        EXPECT_EQ(line, L"a line of text");
    }

    const std::string m_longText = [] {
        std::string text;
        for (int i = 0; i < 5000; ++i)
            text += "a line of text\n";
        return text;
    }();
    const ScopedEnvironment m_locale{"LC_ALL", "C.UTF-8"};
};

TEST_F(ArchiveZipToolsTest, ReadsEntriesThatZipStoredOrDeflated)
{
    for (const char* const level : {"-0", "-1", "-9"}) {
        SCOPED_TRACE(level);
        std::filesystem::remove(m_directory.Path() / "archive.zip");
        Run(std::string("zip -q -r ") + level + " archive.zip long.txt sub");
        ExpectFiles();
    }
}

TEST_F(ArchiveZipToolsTest, ReadsAnArchiveThatWasStreamed)
{
    Run("zip -q -r - long.txt sub | cat > archive.zip");

    ExpectFiles();
}

// The sizes of a streamed entry follow its data, but wxZipInputStream needs those of a Zip64 entry
// before the data.
TEST_F(ArchiveZipToolsTest, ReadsNothingFromAZip64EntryThatWasStreamed)
{
    Run("cat long.txt | zip -q - - | cat > archive.zip");

    EXPECT_THAT(ListNames(Path()), ElementsAre(L"-"));
    EXPECT_EQ(m_entries[L"-"]->GetSize(), static_cast<wxFileOffset>(m_longText.size()));
    EXPECT_TRUE(ReadBytes(L"-").empty());
}

TEST_F(ArchiveZipToolsTest, ReadsZip64)
{
    Run("zip -q -r -fz archive.zip long.txt sub");

    ExpectFiles();
    EXPECT_EQ(m_entries[L"long.txt"]->GetSize(), 75'000);
}

TEST_F(ArchiveZipToolsTest, ReadsEntriesBeyondFourGigabytes)
{
    // The file is sparse, so it needs almost no disk space.
    Run("truncate -s 5G archive.zip");
    RunPython("z.writestr('a', 'one'); z.writestr('b', 'two')", "a");

    EXPECT_THAT(ListNames(Path()), ElementsAre(L"a", L"b"));
    EXPECT_EQ(m_entries[L"a"]->GetOffset(), 5ll << 30);
    EXPECT_EQ(ReadBytes(L"b"), "two");
    EXPECT_EQ(ReadBytes(L"a"), "one");
}

TEST_F(ArchiveZipToolsTest, ReadsAnArchiveAppendedToAProgram)
{
    Run("zip -q -r plain.zip long.txt sub && (echo program; cat plain.zip) > archive.zip");
    ExpectFiles();

    // -A makes the offsets count from the beginning of the file, including the program.
    Run("zip -q -A archive.zip");
    ExpectFiles();
}

TEST_F(ArchiveZipToolsTest, DoesNotDecryptEntriesButReadsTheOthers)
{
    Run("zip -q -0 -P secret archive.zip long.txt && zip -q -r archive.zip sub");
    ListNames(Path());

    EXPECT_NE(m_entries[L"long.txt"]->GetFlags() & 1, 0);
    EXPECT_EQ(ReadBytes(L"long.txt").find("a line"), std::string::npos);
    EXPECT_EQ(ReadBytes(L"sub/short.txt"), "short");
    Run("zip -q -9 -P secret archive.zip long.txt");
    ListNames(Path());
    EXPECT_EQ(ReadBytes(L"long.txt").find("a line"), std::string::npos);
    EXPECT_FALSE(IsOk());
    EXPECT_EQ(ReadBytes(L"sub/short.txt"), "short");
}

TEST_F(ArchiveZipToolsTest, IgnoresAnEndSignatureInTheComment)
{
    RunPython("z.writestr('a', 'one'); z.comment = b'PK\\x05\\x06 comment'");

    EXPECT_THAT(ListNames(Path()), ElementsAre(L"a"));
    EXPECT_EQ(ReadBytes(L"a"), "one");
}

TEST_F(ArchiveZipToolsTest, ListsUtf8NamesInAnyLocale)
{
    RunPython("z.writestr('\\u00e9t\\u00e9/\\u6f22', 'one')");
    for (const char* const name : {"C", "C.UTF-8"}) {
        const ScopedLocale locale(name);
        EXPECT_THAT(ListNames(Path()), ElementsAre(L"\u00E9t\u00E9/\u6F22")) << name;
        EXPECT_EQ(ReadBytes(L"\u00E9t\u00E9/\u6F22"), "one");
    }
}

// Lists the archive in other processes, because wxWidgets reads the locale's encoding from the
// environment only once per process.
TEST_F(ArchiveZipToolsTest, DecodesUnmarkedNamesInTheLocalesEncodingOrLatin1)
{
    // Python marks non-ASCII names as UTF-8, so clear that flag.
    RunPython("z.writestr('\\u00e9', 'one')");
    std::string bytes = m_directory.ReadFile(L"archive.zip");
    constexpr std::size_t flagsInHeader = 7;
    constexpr std::size_t flagsInDirectory = 9;
    bytes[flagsInHeader] = 0;
    bytes[bytes.find("PK\1\2") + flagsInDirectory] = 0;
    WriteBytes(bytes);

    constexpr std::pair<const char*, const char*> cases[] = {{"C.UTF-8", "e9 \n"},
                                                             {"C", "c3 a9 \n"}};
    for (const auto& [name, expected] : cases) {
        const ScopedEnvironment locale("LC_ALL", name);
        EXPECT_EQ(
            RunProgram(TOOLKIT_TEST_ARCHIVE_NAMES, {m_directory.Path() / "archive.zip"}).output,
            expected)
            << name;
    }
}

TEST_F(ArchiveZipToolsTest, ReadsNothingCompressedByAnUnsupportedMethod)
{
    RunPython("z.write('long.txt', compress_type=zipfile.ZIP_BZIP2);"
              "z.write('sub/short.txt', compress_type=zipfile.ZIP_DEFLATED)");
    ListNames(Path());

    EXPECT_EQ(ReadBytes(L"long.txt"), "");
    EXPECT_FALSE(IsOk());
    EXPECT_EQ(ReadBytes(L"sub/short.txt"), "short");
}

TEST_F(ArchiveZipToolsTest, ReportsDateAndPermissionsOfEntries)
{
    RunPython("i = zipfile.ZipInfo('a', (2020, 2, 29, 13, 14, 16));"
              "i.create_system = 3; i.external_attr = 0o100444 << 16 | 1; z.writestr(i, 'one')");
    const ScopedTimeZone zone("UTC");
    ListNames(Path());

    const smart_ptr<ArchiveZipEntry> entry = m_entries[L"a"];
    EXPECT_EQ(entry->GetDateTime().GetTicks(), 1582982056);
    EXPECT_TRUE(entry->IsReadOnly());
    EXPECT_EQ(entry->GetMode(), 0444);
}

TEST_F(ArchiveZipToolsTest, ListsAHundredThousandEntries)
{
    RunPython("[z.writestr('entry%d' % i, str(i)) for i in range(100000)]");

    EXPECT_EQ(ListNames(Path()).size(), 100'000u);
    EXPECT_EQ(ReadBytes(L"entry99999"), "99999");
    EXPECT_EQ(ReadBytes(L"entry0"), "0");
    EXPECT_EQ(ListNames(Path(), L"entry9999*").size(), 11u);
}

} // namespace
} // namespace Toolkit
