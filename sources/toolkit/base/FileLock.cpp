#include "toolkit/base/FileLock.h"

#include "toolkit/base/Fork.h"

#include <cerrno>
#include <sys/file.h>
#include <sys/stat.h>
#include <utility>

namespace Toolkit::Base {
namespace {

bool IsSameFile(const FileDescriptor& one, const FileDescriptor& other)
{
    struct stat first {};
    struct stat second {};
    return ::fstat(one.Get(), &first) == 0 && ::fstat(other.Get(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

FileLock* s_firstHeld BASE_GUARDED_BY(ForkLocks::s_fileLocks) = nullptr;

} // namespace

FileLock::FileLock(FileDescriptor file)
    : m_file(std::move(file)), m_next(nullptr), m_state(State::Unavailable)
{
    const CheckedLock guard(ForkLocks::s_fileLocks);
    m_state = TryLock();
    if (m_state == State::Held) {
        m_ownFile.Watch(m_file.Get());
        m_next = s_firstHeld;
        s_firstHeld = this;
    }
}

FileLock::~FileLock()
{
    const CheckedLock guard(ForkLocks::s_fileLocks);
    FileLock** link = &s_firstHeld;
    while (*link && *link != this)
        link = &(*link)->m_next;
    if (*link)
        *link = m_next;
}

FileLock::State FileLock::TryLock() BASE_REQUIRES(ForkLocks::s_fileLocks)
{
    if (!m_file.IsOpen())
        return State::Unavailable;
    if (::flock(m_file.Get(), LOCK_EX | LOCK_NB) == 0)
        return State::Held;
    if (errno != EWOULDBLOCK)
        return State::Unavailable;
    return ShareWithThisProcess() ? State::Held : State::HeldElsewhere;
}

// flock(2) treats each open(2) of a file as a separate owner, even in one process. So this object
// shares the open file of the one that holds the lock.
bool FileLock::ShareWithThisProcess() BASE_REQUIRES(ForkLocks::s_fileLocks)
{
    for (const FileLock* held = s_firstHeld; held; held = held->m_next) {
        if (!IsSameFile(held->m_file, m_file))
            continue;
        m_file = held->m_file.Duplicate();
        return true;
    }
    return false;
}

} // namespace Toolkit::Base
