#include "toolkit/archive/ArchiveZip.h"
#include "toolkit/encoding/UTF8.h"

#include <benchmark/benchmark.h>
#include <wx/txtstrm.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

#include <Poco/Zip/ZipArchive.h>
#include <Poco/Zip/ZipStream.h>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <minizip/unzip.h>
#include <random>
#include <string>
#include <utility>
#include <vector>
#include <zip.h>

namespace {

using namespace Toolkit;
using Bytes = std::vector<unsigned char>;

constexpr int c_entryCount = 10'000;

// Returns lines of words from a small vocabulary. Deflating shrinks them to about a third.
std::string MakeText(std::size_t size)
{
    constexpr int wordsPerLine = 12;
    std::mt19937 random(1);
    std::vector<std::string> vocabulary(5000);
    for (std::string& word : vocabulary) {
        for (auto length = 2 + random() % 9; length > 0; --length)
            word.push_back(static_cast<char>('a' + random() % 26));
    }
    std::string text;
    for (int words = 1; text.size() < size; ++words)
        text += vocabulary[random() % vocabulary.size()] + (words % wordsPerLine ? ' ' : '\n');
    text.resize(size);
    text.back() = '\n';
    return text;
}

// The archives to read, removed at the end of the program.
class Archives {
public:
    Archives()
    {
        std::string name = (std::filesystem::temp_directory_path() / "bench-XXXXXX").native();
        if (!::mkdtemp(name.data()))
            std::abort();
        m_directory = name;
        Write("large.zip", {{"large", MakeText(50'000'000)}});
        Write("small.zip", {{"small", GetSmallText()}});
        std::map<std::string, std::string> many;
        for (int i = 0; i < c_entryCount; ++i)
            many["directory/" + std::to_string(i)].push_back('x');
        Write("many.zip", many);
    }
    ~Archives() { std::filesystem::remove_all(m_directory); }

    Archives(const Archives&) = delete;
    Archives& operator=(const Archives&) = delete;

    static const std::string& GetSmallText()
    {
        static const std::string text = MakeText(1'000'000);
        return text;
    }

    std::string Path(const std::string& name) const { return m_directory / name; }

private:
    void Write(const std::string& name, const std::map<std::string, std::string>& entries) const
    {
        wxFFileOutputStream file{wxString(Path(name))};
        wxZipOutputStream archive(file);
        for (const auto& [entry, content] : entries) {
            archive.PutNextEntry(wxString(entry));
            archive.Write(content.data(), content.size());
        }
    }

    std::filesystem::path m_directory;
};

const Archives& GetArchives()
{
    static const Archives archives;
    return archives;
}

// The stream of an archive's only entry, at its beginning.
class ToolkitEntry {
public:
    explicit ToolkitEntry(const std::string& name)
    {
        ArchiveZip archive;
        ArchiveZip::EntriesMap entries;
        archive.Open(UTF8::ToUNICODE(GetArchives().Path(name)));
        archive.EntriesList(entries, L"", ArchiveEntriesFlags::AllEntries);
        m_stream = archive.GetZipInputStream(entries.begin()->second);
    }

    ZipInputStream& Stream() { return *m_stream; }

private:
    smart_ptr<ZipInputStream> m_stream;
};

// Like ToolkitEntry, but with a wxZipInputStream.
class WxEntry {
public:
    explicit WxEntry(const std::string& name)
        : m_stream(new wxFFileInputStream(wxString(GetArchives().Path(name))))
    {
        const std::unique_ptr<wxZipEntry> entry(m_stream.GetNextEntry());
        m_stream.OpenEntry(*entry);
    }

    wxZipInputStream& Stream() { return m_stream; }

private:
    wxZipInputStream m_stream;
};

// Each of these checks a result and sets the throughput.
void FinishListing(benchmark::State& state, std::size_t count)
{
    if (count != c_entryCount)
        state.SkipWithError("wrong number of entries");
    state.SetItemsProcessed(state.iterations() * c_entryCount);
}

void FinishReading(benchmark::State& state, std::size_t size, std::size_t expected)
{
    if (size != expected)
        state.SkipWithError("wrong size");
    state.SetBytesProcessed(state.iterations() * static_cast<long>(expected));
}

// Opens the archive and reads a 50 MB entry.
void BM_ZipReadBytes_Toolkit(benchmark::State& state)
{
    GetArchives();
    std::size_t size = 0;
    for (auto _ : state) {
        Bytes bytes;
        ToolkitEntry("large.zip").Stream() >> bytes;
        size = bytes.size();
    }
    FinishReading(state, size, 50'000'000);
}
BENCHMARK(BM_ZipReadBytes_Toolkit)->Unit(benchmark::kMillisecond);

void BM_ZipReadBytes_Minizip(benchmark::State& state)
{
    const std::string path = GetArchives().Path("large.zip");
    std::size_t size = 0;
    for (auto _ : state) {
        unz_file_info64 info{};
        const unzFile archive = ::unzOpen64(path.c_str());
        ::unzGetCurrentFileInfo64(archive, &info, nullptr, 0, nullptr, 0, nullptr, 0);
        ::unzOpenCurrentFile(archive);
        Bytes bytes(info.uncompressed_size);
        size = static_cast<std::size_t>(
            ::unzReadCurrentFile(archive, bytes.data(), static_cast<unsigned int>(bytes.size())));
        ::unzCloseCurrentFile(archive);
        ::unzClose(archive);
    }
    FinishReading(state, size, 50'000'000);
}
BENCHMARK(BM_ZipReadBytes_Minizip)->Unit(benchmark::kMillisecond);

void BM_ZipReadBytes_Libzip(benchmark::State& state)
{
    const std::string path = GetArchives().Path("large.zip");
    std::size_t size = 0;
    for (auto _ : state) {
        zip_stat_t status;
        zip_t* const archive = ::zip_open(path.c_str(), ZIP_RDONLY, nullptr);
        ::zip_stat_index(archive, 0, 0, &status);
        zip_file_t* const file = ::zip_fopen_index(archive, 0, 0);
        Bytes bytes(status.size);
        size = static_cast<std::size_t>(::zip_fread(file, bytes.data(), bytes.size()));
        ::zip_fclose(file);
        ::zip_close(archive);
    }
    FinishReading(state, size, 50'000'000);
}
BENCHMARK(BM_ZipReadBytes_Libzip)->Unit(benchmark::kMillisecond);

// Reads the small entry with `next`, which returns false at the end of the entry.
template <typename Entry, typename String, typename Next>
void ReadStrings(benchmark::State& state, Next next)
{
    GetArchives();
    std::size_t size = 0;
    for (auto _ : state) {
        Entry entry("small.zip");
        String text;
        size = 0;
        while (next(entry.Stream(), text))
            size += text.size() + 1;
    }
    FinishReading(state, size, Archives::GetSmallText().size());
}

void BM_ZipReadLines_Toolkit(benchmark::State& state)
{
    ReadStrings<ToolkitEntry, TString<wchar_t>>(
        state, [](ZipInputStream& stream, auto& line) { return stream.ReadLine(line); });
}
BENCHMARK(BM_ZipReadLines_Toolkit)->Unit(benchmark::kMillisecond);

// Creates a new wxTextInputStream for every line.
void BM_ZipReadLines_wxFreshReader(benchmark::State& state)
{
    ReadStrings<WxEntry, wxString>(state, [](wxZipInputStream& stream, wxString& line) {
        line = wxTextInputStream(stream, " \t").ReadLine();
        return stream.IsOk();
    });
}
BENCHMARK(BM_ZipReadLines_wxFreshReader)->Unit(benchmark::kMillisecond);

// Reads lines of bytes without decoding them.
void BM_ZipReadLines_PocoGetline(benchmark::State& state)
{
    const std::string path = GetArchives().Path("small.zip");
    std::size_t size = 0;
    for (auto _ : state) {
        std::ifstream file(path, std::ios::binary);
        const Poco::Zip::ZipArchive archive(file);
        file.clear();
        Poco::Zip::ZipInputStream entry(file, archive.headerBegin()->second);
        std::string line;
        size = 0;
        while (std::getline(entry, line))
            size += line.size() + 1;
    }
    FinishReading(state, size, Archives::GetSmallText().size());
}
BENCHMARK(BM_ZipReadLines_PocoGetline)->Unit(benchmark::kMillisecond);

void BM_ZipReadWords_Toolkit(benchmark::State& state)
{
    ReadStrings<ToolkitEntry, TString<wchar_t>>(
        state, [](ZipInputStream& stream, auto& word) { return (stream >> word).IsOk(); });
}
BENCHMARK(BM_ZipReadWords_Toolkit)->Unit(benchmark::kMillisecond);

void BM_ZipReadWords_wxFreshReader(benchmark::State& state)
{
    ReadStrings<WxEntry, wxString>(state, [](wxZipInputStream& stream, wxString& word) {
        word = wxTextInputStream(stream, " \t").ReadWord();
        return stream.IsOk();
    });
}
BENCHMARK(BM_ZipReadWords_wxFreshReader)->Unit(benchmark::kMillisecond);

void BM_ZipList_Toolkit(benchmark::State& state)
{
    const TString<wchar_t> path = UTF8::ToUNICODE(GetArchives().Path("many.zip"));
    ArchiveZip::EntriesMap entries;
    for (auto _ : state) {
        ArchiveZip archive;
        archive.Open(path);
        archive.EntriesList(entries, L"", ArchiveEntriesFlags::AllEntries);
    }
    FinishListing(state, entries.size());
}
BENCHMARK(BM_ZipList_Toolkit)->Unit(benchmark::kMillisecond);

// Builds the same result: a map from wide names to the metadata of the entries.
void BM_ZipList_Libzip(benchmark::State& state)
{
    const std::string path = GetArchives().Path("many.zip");
    std::map<TString<wchar_t>, std::unique_ptr<zip_stat_t>> entries;
    for (auto _ : state) {
        entries.clear();
        zip_t* const archive = ::zip_open(path.c_str(), ZIP_RDONLY, nullptr);
        const zip_int64_t count = ::zip_get_num_entries(archive, 0);
        for (zip_int64_t i = 0; i < count; ++i) {
            auto status = std::make_unique<zip_stat_t>();
            ::zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, status.get());
            TString<wchar_t> name = UTF8::ToUNICODE(TString<char>(status->name));
            entries.emplace(std::move(name), std::move(status));
        }
        ::zip_close(archive);
    }
    FinishListing(state, entries.size());
}
BENCHMARK(BM_ZipList_Libzip)->Unit(benchmark::kMillisecond);

} // namespace
