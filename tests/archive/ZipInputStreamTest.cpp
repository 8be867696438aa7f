#include "toolkit/archive/ZipInputStream.h"

#include "toolkit/archive/ArchiveZip.h"

#include "support/OutOfMemory.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/txtstrm.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "archive/ZipWriter.h"

namespace Toolkit {
namespace {

using TestSupport::TempDir;
using TestSupport::WriteZip;

// An archive with one entry, which is open for reading.
class OpenedEntry {
public:
    explicit OpenedEntry(const TString<wchar_t>& path)
    {
        ArchiveZip::EntriesMap entries;
        m_archive.Open(path);
        m_archive.EntriesList(entries, L"", ArchiveEntriesFlags::AllEntries);
        m_stream = m_archive.GetZipInputStream(entries.begin()->second);
    }

    ZipInputStream& Stream() { return *m_stream; }
    wxZipInputStream& WxStream() { return *static_cast<wxZipInputStream*>(*m_stream); }

private:
    ArchiveZip m_archive;
    smart_ptr<ZipInputStream> m_stream;
};

class ZipInputStreamTest : public testing::Test {
protected:
    TString<wchar_t> Write(const std::string& bytes) const
    {
        WriteZip(m_directory.File(L"archive.zip"), {{L"entry", bytes}});
        return m_directory.File(L"archive.zip");
    }

    // Writes `bytes` as an entry and returns the lines that ReadLine() reads from it.
    std::vector<std::wstring> ReadLines(const std::string& bytes) const
    {
        OpenedEntry entry(Write(bytes));
        std::vector<std::wstring> lines;
        TString<wchar_t> line;
        while (entry.Stream().ReadLine(line))
            lines.push_back(line);
        EXPECT_EQ(line, L"");
        EXPECT_FALSE(entry.Stream().IsOk());
        return lines;
    }

    std::vector<std::wstring> ReadWords(const std::string& bytes) const
    {
        OpenedEntry entry(Write(bytes));
        std::vector<std::wstring> words;
        while (entry.Stream().IsOk()) {
            TString<wchar_t> word = L"old";
            entry.Stream() >> word;
            words.push_back(word);
        }
        return words;
    }

    const wxInitializer m_wxWidgets;
    const TempDir m_directory;
};

TEST_F(ZipInputStreamTest, ReadsLinesWithEveryKindOfLineEnd)
{
    EXPECT_EQ(ReadLines("one\ntwo\r\nthree\rfour\n\nsix\n"),
              (std::vector<std::wstring>{L"one", L"two", L"three", L"four", L"", L"six"}));
}

TEST_F(ZipInputStreamTest, DropsALastLineWithoutALineEnd)
{
    EXPECT_EQ(ReadLines("one\ntwo"), (std::vector<std::wstring>{L"one"}));
    EXPECT_EQ(ReadLines("one"), std::vector<std::wstring>());
    EXPECT_EQ(ReadLines(""), std::vector<std::wstring>());
}

TEST_F(ZipInputStreamTest, ReadsLinesInUtf8)
{
    EXPECT_EQ(ReadLines("\xC3\xA9t\xC3\xA9 \xF0\x9F\x98\x80\n"),
              (std::vector<std::wstring>{L"\u00E9t\u00E9 \U0001F600"}));
}

TEST_F(ZipInputStreamTest, ReadsLongLines)
{
    const std::string line(1'000'000, 'x');

    EXPECT_EQ(ReadLines(line + "\n" + line + "\n"),
              (std::vector<std::wstring>(2, std::wstring(1'000'000, L'x'))));
}

TEST_F(ZipInputStreamTest, ReadsWordsBetweenSpacesTabsAndLineEnds)
{
    EXPECT_EQ(ReadWords(" one\ttwo \r\n three\n"),
              (std::vector<std::wstring>{L"one", L"two", L"three", L""}));
}

TEST_F(ZipInputStreamTest, ReadsALastWordWithoutADelimiter)
{
    EXPECT_EQ(ReadWords("one two"), (std::vector<std::wstring>{L"one", L"two"}));
}

TEST_F(ZipInputStreamTest, ReadsWordsLinesAndBytesInTurn)
{
    OpenedEntry entry(Write("a word then\na line\nand bytes"));
    TString<wchar_t> first;
    TString<wchar_t> second;
    TString<wchar_t> rest;
    TString<wchar_t> line;
    std::vector<unsigned char> bytes;

    entry.Stream() >> first >> second;
    EXPECT_TRUE(entry.Stream().ReadLine(rest));
    EXPECT_EQ(entry.WxStream().GetC(), 'a');
    EXPECT_TRUE(entry.Stream().ReadLine(line));
    entry.Stream() >> bytes;

    EXPECT_EQ(first, L"a");
    EXPECT_EQ(second, L"word");
    EXPECT_EQ(rest, L"then");
    EXPECT_EQ(line, L" line");
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "and bytes");
}

TEST_F(ZipInputStreamTest, LeavesTheWxStreamRightAfterTheLine)
{
    OpenedEntry entry(Write("one\ntwo\n"));
    TString<wchar_t> line;

    entry.Stream().ReadLine(line);

    EXPECT_EQ(entry.WxStream().TellI(), 4);
}

TEST_F(ZipInputStreamTest, HonoursAByteOrderMarkAtTheStartOfEachRead)
{
    const std::string marked = "\xEF\xBB\xBFone\n\xEF\xBB\xBFtwo\n";

    EXPECT_EQ(ReadLines(marked), (std::vector<std::wstring>{L"one", L"two"}));
}

TEST_F(ZipInputStreamTest, FailsWhenOutOfMemory)
{
    const TString<wchar_t> path = Write(std::string(5'000'000, 'x') + "\n");
    TString<wchar_t> text = L"old";
    std::vector<unsigned char> bytes;
    const TestSupport::AllocationLimit limit(1'000'000);

    OpenedEntry forLine(path);
    EXPECT_FALSE(forLine.Stream().ReadLine(text));
    EXPECT_FALSE(forLine.Stream().IsOk());
    OpenedEntry forWord(path);
    forWord.Stream() >> text;
    EXPECT_FALSE(forWord.Stream().IsOk());
    OpenedEntry forBytes(path);
    forBytes.Stream() >> bytes;
    EXPECT_FALSE(forBytes.Stream().IsOk());

    EXPECT_EQ(text, L"");
    EXPECT_LT(bytes.size(), 1'000'000u);
}

TEST_F(ZipInputStreamTest, ReadsNothingWithoutAStream)
{
    ZipInputStream stream(nullptr);
    TString<wchar_t> text = L"old";
    std::vector<unsigned char> bytes;

    EXPECT_FALSE(stream.CanRead());
    EXPECT_FALSE(stream.IsOk());
    EXPECT_FALSE(stream.ReadLine(text));
    stream >> text;
    stream >> bytes;
    EXPECT_EQ(text, L"");
    EXPECT_TRUE(bytes.empty());
}

TEST_F(ZipInputStreamTest, ReadsFromAStreamThatTheCallerCreated)
{
    auto source =
        std::make_unique<wxZipInputStream>(new wxFFileInputStream(wxString(Write("one two\n"))));
    delete source->GetNextEntry();
    ZipInputStream stream(source.release());
    TString<wchar_t> word;
    TString<wchar_t> line;

    stream >> word;
    EXPECT_TRUE(stream.ReadLine(line));

    EXPECT_TRUE(stream.CanRead());
    EXPECT_EQ(word, L"one");
    EXPECT_EQ(line, L"two");
}

// Reads with a new wxTextInputStream for each call, from a second stream of the same entry.
class ReferenceReader {
public:
    explicit ReferenceReader(wxZipInputStream& stream) : m_stream(stream) {}

    std::wstring ReadWord() { return wxTextInputStream(m_stream, " \t").ReadWord().ToStdWstring(); }

    bool ReadLine(std::wstring& line)
    {
        line = wxTextInputStream(m_stream, " \t").ReadLine().ToStdWstring();
        if (m_stream.IsOk())
            return true;
        line.clear();
        return false;
    }

private:
    wxZipInputStream& m_stream;
};

std::string RandomContent(std::mt19937& random)
{
    const std::string pieces[] = {"a",    "bc",           " ",        "\t",           "\n",
                                  "\r",   "\r\n",         "\xC3\xA9", "word",         "x ",
                                  "\n\n", "\xE6\xBC\xA2", "\xFF",     "\xEF\xBB\xBF", "\xC3",
                                  "\xE0", {"\0", 1u},     "\xFE\xFF"};
    std::string content;
    for (auto count = random() % 60; count > 0; --count) {
        content += pieces[random() % std::size(pieces)];
        if (random() % 30 == 0)
            content += std::string(random() % 9000, 'q');
    }
    return content;
}

// Reads a line (`way` 0), a word (1) or a byte (2) from both streams. Returns what differs; empty
// if nothing does.
std::string ReadOnce(unsigned long way, OpenedEntry& entry, wxZipInputStream& reference)
{
    ReferenceReader reader(reference);
    if (way == 0) {
        TString<wchar_t> line;
        std::wstring expected;
        const bool hasLine = entry.Stream().ReadLine(line);
        if (hasLine != reader.ReadLine(expected) || line != expected)
            return "line";
    } else if (way == 1) {
        TString<wchar_t> word;
        entry.Stream() >> word;
        if (word != reader.ReadWord())
            return "word";
    } else if (entry.WxStream().GetC() != reference.GetC()) {
        return "byte";
    }
    return entry.WxStream().GetLastError() == reference.GetLastError() ? "" : "state";
}

TEST_F(ZipInputStreamTest, MatchesANewWxTextInputStreamPerCall)
{
    const wxLogNull silence;
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        const TString<wchar_t> path = Write(RandomContent(random));
        OpenedEntry entry(path);
        wxZipInputStream reference(new wxFFileInputStream(wxString(path)));
        delete reference.GetNextEntry();
        for (int read = 0; read < 80; ++read)
            ASSERT_EQ(ReadOnce(random() % 3, entry, reference), "") << round << " " << read;
    }
}

} // namespace
} // namespace Toolkit
