#include "toolkit/base/InstanceLock.h"

#include "toolkit/base/ShortenName.h"
#include "toolkit/base/UserAccount.h"
#include "toolkit/base/Utf8.h"

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>

namespace Toolkit::Base {
namespace {

// File names end at 255 bytes.
constexpr std::size_t c_longestName = 216;

FileDescriptor OpenLockFile(const std::wstring& name)
{
    if (name.empty())
        return {};
    const std::string path = EncodeUtf8(GetHomeDirectory()) + "/." +
                             ShortenName(EncodeUtf8(name), c_longestName) + ".lock";
    return FileDescriptor::OpenRegular(path, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
}

bool IsSameFile(const FileDescriptor& one, const FileDescriptor& other)
{
    struct stat first {};
    struct stat second {};
    return ::fstat(one.Get(), &first) == 0 && ::fstat(other.Get(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

std::mutex s_mutex;
InstanceLock* s_firstHeld = nullptr; // guarded by s_mutex

} // namespace

InstanceLock::InstanceLock(const std::wstring& name)
    : m_file(OpenLockFile(name)), m_next(nullptr), m_state(State::Unavailable)
{
    const std::lock_guard<std::mutex> guard(s_mutex);
    m_state = Take();
    if (m_state == State::Held) {
        m_next = s_firstHeld;
        s_firstHeld = this;
    }
}

InstanceLock::~InstanceLock()
{
    const std::lock_guard<std::mutex> guard(s_mutex);
    InstanceLock** link = &s_firstHeld;
    while (*link && *link != this)
        link = &(*link)->m_next;
    if (*link)
        *link = m_next;
}

InstanceLock::State InstanceLock::Take()
{
    if (!m_file.IsOpen())
        return State::Unavailable;
    if (::flock(m_file.Get(), LOCK_EX | LOCK_NB) == 0)
        return State::Held;
    if (errno != EWOULDBLOCK)
        return State::Unavailable;
    return ShareWithThisProcess() ? State::Held : State::HeldElsewhere;
}

// To the system a file that was opened twice has two owners, even within one process.
bool InstanceLock::ShareWithThisProcess()
{
    for (const InstanceLock* held = s_firstHeld; held; held = held->m_next) {
        if (!IsSameFile(held->m_file, m_file))
            continue;
        m_file = FileDescriptor(::fcntl(held->m_file.Get(), F_DUPFD_CLOEXEC, 0));
        return true;
    }
    return false;
}

} // namespace Toolkit::Base
