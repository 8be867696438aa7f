// A program that tests start. It writes a report to the file named by TOOLKIT_TEST_REPORT: its
// command line, one argument per line, and the number of inherited files, not counting the standard
// streams.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <unistd.h>

namespace {

int CountInheritedFiles()
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closed;
        // The iterator's own descriptor refers to a directory, so it is not counted.
        const bool isDirectory = std::filesystem::is_directory(entry.path(), closed);
        if (std::stoi(entry.path().filename()) > STDERR_FILENO && !isDirectory)
            ++count;
    }
    return count;
}

} // namespace

int main(int argc, char** argv)
{
    const int inherited = CountInheritedFiles();
    const char* const report = std::getenv("TOOLKIT_TEST_REPORT");
    if (!report)
        return 1;
    std::ofstream file(report, std::ios::binary);
    for (int argument = 0; argument < argc; ++argument)
        file << argv[argument] << '\n';
    file << inherited << " inherited files\n";
    return file.flush() ? 0 : 1;
}
