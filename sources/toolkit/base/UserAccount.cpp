#include "toolkit/base/UserAccount.h"

#include "toolkit/base/Utf8.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <pwd.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace Toolkit::Base {
namespace {

// Returns one field of the user's entry in the user database; empty if there is no entry, or if it
// cannot be read.
std::string ReadEntry(char* passwd::*field)
{
    constexpr std::size_t initialSize = 1024;
    constexpr std::size_t maxSize = 1048576;

    std::vector<char> buffer(initialSize);
    passwd entry{};
    passwd* found = nullptr;
    while (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < maxSize)
        buffer.resize(buffer.size() * 2);
    return found && found->*field ? found->*field : std::string();
}

} // namespace

std::wstring GetLoginName()
{
    return DecodeUtf8(ReadEntry(&passwd::pw_name));
}

std::wstring GetHomeDirectory()
{
    const char* const home = std::getenv("HOME");
    std::wstring directory = DecodeUtf8(home);
    if (directory.empty())
        directory = DecodeUtf8(ReadEntry(&passwd::pw_dir));
    return directory;
}

} // namespace Toolkit::Base
