// A program for tests to start. To the file named by TOOLKIT_TEST_REPORT it writes its arguments,
// one per line, and the number of its open files above standard error.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

int CountInheritedFiles()
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closed;
        // The iterator's own descriptor may already be closed when this entry is read.
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
