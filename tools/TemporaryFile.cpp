#include "TemporaryFile.h"

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "Failure.h"

namespace Tool {
namespace {

Descriptor CreateUnnamedFile()
{
    const char* const directory = std::getenv("TMPDIR");
    std::string path =
        (directory && *directory ? directory : "/tmp") + std::string("/toolkit-XXXXXX");
    Descriptor file(::mkostemp(path.data(), O_CLOEXEC));
    if (!file.IsOpen())
        throw MakeSystemFailure("cannot create a temporary file in " +
                                path.substr(0, path.rfind('/')));
    ::unlink(path.c_str());
    return file;
}

void WriteAll(int file, const char* bytes, std::size_t length)
{
    while (length > 0) {
        const ssize_t count = ::write(file, bytes, length);
        if (count < 0 && errno != EINTR)
            throw MakeSystemFailure("cannot write to a temporary file");
        if (count > 0) {
            bytes += count;
            length -= static_cast<std::size_t>(count);
        }
    }
}

} // namespace

Descriptor SpoolToFile(int source)
{
    constexpr std::size_t blockSize = 1 << 18;

    Descriptor file = CreateUnnamedFile();
    std::vector<char> block(blockSize);
    for (;;) {
        const ssize_t count = ::read(source, block.data(), block.size());
        if (count == 0)
            return file;
        if (count > 0)
            WriteAll(file.Get(), block.data(), static_cast<std::size_t>(count));
        else if (errno != EINTR)
            throw MakeSystemFailure("cannot read the input");
    }
}

} // namespace Tool
