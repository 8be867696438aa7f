#include "toolkit/system/InstanceLock.Private.h"

#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/UserAccount.Private.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>

#include <fcntl.h>
#include <sys/file.h>

namespace Toolkit {
namespace {

// FNV-1a, 64 bits: http://www.isthe.com/chongo/tech/comp/fnv
std::uint64_t HashOf(const std::string& text)
{
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char character : text) {
        hash ^= static_cast<unsigned char>(character);
        hash *= 0x100000001B3;
    }
    return hash;
}

// File names end at 255 bytes. A longer name keeps its beginning and gets a hash for the rest, so
// that all processes of one application meet at one file.
std::string FittingName(const std::string& name)
{
    constexpr std::size_t longest = 200;
    if (name.size() <= longest)
        return name;
    char hash[17];
    std::snprintf(hash, sizeof hash, "%016llx", static_cast<unsigned long long>(HashOf(name)));
    return name.substr(0, longest) + hash;
}

std::string LockFilePath(const TString<wchar_t>& name)
{
    return UTF8::ToUTF8(UserAccount::HomeDirectory()) + "/." + FittingName(UTF8::ToUTF8(name)) +
           ".lock";
}

} // namespace

InstanceLock::InstanceLock(const TString<wchar_t>& name)
    : m_file(FileDescriptor::OpenRegular(LockFilePath(name), O_RDWR | O_CREAT | O_NOFOLLOW, 0600)),
      m_state(State::Unavailable)
{
    if (!m_file.IsOpen())
        return;
    if (::flock(m_file.Get(), LOCK_EX | LOCK_NB) == 0)
        m_state = State::Held;
    else if (errno == EWOULDBLOCK)
        m_state = State::HeldElsewhere;
}

} // namespace Toolkit
