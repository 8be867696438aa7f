#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/Directory.h"

#include <benchmark/benchmark.h>
#include <wx/dir.h>

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

using namespace Toolkit;

constexpr std::size_t c_fileCount = 100'000;

// A directory of empty files, removed at the end of the program.
class FullDirectory {
public:
    FullDirectory()
    {
        std::string name = (std::filesystem::temp_directory_path() / "bench-XXXXXX").native();
        if (!::mkdtemp(name.data()))
            std::abort();
        m_path = name;
        for (std::size_t i = 0; i < c_fileCount; ++i) {
            const std::string file = "file" + std::to_string(i) + ".txt";
            if (::mknod((m_path / file).c_str(), S_IFREG | 0600, 0) != 0)
                std::abort();
        }
    }
    ~FullDirectory() { std::filesystem::remove_all(m_path); }

    FullDirectory(const FullDirectory&) = delete;
    FullDirectory& operator=(const FullDirectory&) = delete;

    const std::string& Path() const { return m_path.native(); }

private:
    std::filesystem::path m_path;
};

const std::string& GetDirectoryPath()
{
    static const FullDirectory directory;
    return directory.Path();
}

// Checks the result and sets the throughput.
void FinishListing(benchmark::State& state, std::size_t count)
{
    if (count != c_fileCount)
        state.SkipWithError("wrong number of names");
    state.SetItemsProcessed(state.iterations() * static_cast<long>(c_fileCount));
}

void List(benchmark::State& state, const TString<wchar_t>& pattern)
{
    const TString<wchar_t> path = UTF8::ToUNICODE(TString<char>(GetDirectoryPath()));
    std::vector<TString<wchar_t>> names;
    for (auto _ : state)
        Directory::EnumFilePaths(names, path, pattern);
    FinishListing(state, names.size());
}

// Reads all names into the same string, and keeps none of them.
void Walk(benchmark::State& state, const wxString& pattern)
{
    const wxString path(GetDirectoryPath());
    std::size_t count = 0;
    for (auto _ : state) {
        const wxDir directory(path);
        wxString name;
        count = 0;
        for (bool hasName = directory.GetFirst(&name, pattern, wxDIR_FILES | wxDIR_DIRS); hasName;
             hasName = directory.GetNext(&name))
            ++count;
    }
    FinishListing(state, count);
}

void BM_ListDirectory_Toolkit(benchmark::State& state)
{
    List(state, L"");
}
BENCHMARK(BM_ListDirectory_Toolkit)->Unit(benchmark::kMillisecond);

void BM_ListDirectory_wxDir(benchmark::State& state)
{
    Walk(state, "");
}
BENCHMARK(BM_ListDirectory_wxDir)->Unit(benchmark::kMillisecond);

void BM_ListMatching_Toolkit(benchmark::State& state)
{
    List(state, L"*.txt");
}
BENCHMARK(BM_ListMatching_Toolkit)->Unit(benchmark::kMillisecond);

void BM_ListMatching_wxDir(benchmark::State& state)
{
    Walk(state, "*.txt");
}
BENCHMARK(BM_ListMatching_wxDir)->Unit(benchmark::kMillisecond);

} // namespace
