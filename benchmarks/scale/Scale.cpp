// Prints the shortest processor time in seconds and the peak of memory in bytes for each operation
// and size. The other benchmarks compare libraries on equal input, which does not show a cost that
// grows faster than the input.
//
// usage: Scale [pattern]
//
// With a pattern, a regular expression, runs only the operations whose name it matches.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <malloc.h>
#include <regex>
#include <string>
#include <unistd.h>

#include "scale/HeapMeter.h"
#include "scale/Operations.h"

namespace Scale {
namespace {

constexpr int c_minRuns = 5;
constexpr double c_minTotalSeconds = 0.2;

// Returns the processor time of all threads. Other programs have little influence on it.
double MeasureSeconds(const Run& run)
{
    const std::clock_t start = std::clock();
    run();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Makes the process keep freed memory, so that later runs do not pay for new pages, which the
// system fills with zeros.
void KeepFreedMemory()
{
    Require(::mallopt(M_MMAP_MAX, 0) == 1 && ::mallopt(M_TRIM_THRESHOLD, -1) == 1);
}

void PrintCosts(const Operation& operation, int size)
{
    const Run run = operation.prepare(size);
    HeapMeter::Reset();
    double shortest = MeasureSeconds(run);
    const std::size_t memory = HeapMeter::GetPeak();
    double total = shortest;
    for (int runs = 1; runs < c_minRuns || total < c_minTotalSeconds; ++runs) {
        const double seconds = MeasureSeconds(run);
        shortest = std::min(shortest, seconds);
        total += seconds;
    }
    std::printf("%s\t%d\t%.9f\t%zu\n", operation.name.c_str(), size, shortest, memory);
    std::fflush(stdout);
}

// Creates a directory, which also becomes the home directory of the program.
std::filesystem::path CreateDirectory()
{
    std::string name = (std::filesystem::temp_directory_path() / "toolkit-scale-XXXXXX").native();
    Require(::mkdtemp(name.data()) && ::setenv("HOME", name.c_str(), 1) == 0);
    return name;
}

} // namespace

const std::filesystem::path& GetDirectory()
{
    static const std::filesystem::path directory = CreateDirectory();
    return directory;
}

TString<wchar_t> ToWide(const std::filesystem::path& path)
{
    return path.wstring();
}

void Require(bool condition)
{
    if (condition)
        return;
    std::fputs("scale: an operation failed\n", stderr);
    std::exit(1);
}

} // namespace Scale

int main(int argc, char** argv)
{
    using namespace Scale;
    const std::regex pattern(argc > 1 ? argv[1] : ".");
    Operations operations;
    AddTextOperations(operations);
    AddEncodingOperations(operations);
    AddPatternOperations(operations);
    AddSettingsOperations(operations);
    AddFileOperations(operations);
    AddArchiveOperations(operations);
    AddThreadOperations(operations);
    AddMessageOperations(operations);
    KeepFreedMemory();
    GetDirectory(); // before the first operation, because it sets HOME
    for (const Operation& operation : operations) {
        for (const int size : operation.sizes) {
            if (std::regex_search(operation.name, pattern))
                PrintCosts(operation, size);
        }
    }
    std::filesystem::remove_all(GetDirectory());
    return 0;
}
