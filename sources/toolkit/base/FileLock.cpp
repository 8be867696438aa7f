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

// Closes the file before the guard is released. Otherwise another thread could find the file locked
// but no holder in the list, and conclude that another process holds the lock.
FileLock::~FileLock()
{
    const CheckedLock guard(ForkLocks::s_fileLocks);
    FileLock** link = &s_firstHeld;
    while (*link && *link != this)
        link = &(*link)->m_next;
    if (*link)
        *link = m_next;
    m_ownFile.Forget();
    m_file.Close();
}

FileLock::State FileLock::TryLock() BASE_REQUIRES(ForkLocks::s_fileLocks)
{
    if (!m_file.IsOpen())
        return State::Unavailable;
    if (::flock(m_file.Get(), LOCK_EX | LOCK_NB) == 0)
        return State::Held;
    if (errno != EWOULDBLOCK)
        return State::Unavailable;
    const FileLock* const holder = FindHolderOfSameFile();
    if (!holder)
        return State::HeldElsewhere;
    // A flock(2) lock belongs to the open file description, even within one process. So this object
    // shares that of the holder.
    m_file = holder->m_file.Duplicate();
    return m_file.IsOpen() ? State::Held : State::Unavailable;
}

// Returns null if no FileLock of this process holds the lock.
const FileLock* FileLock::FindHolderOfSameFile() const BASE_REQUIRES(ForkLocks::s_fileLocks)
{
    for (const FileLock* held = s_firstHeld; held; held = held->m_next) {
        if (IsSameFile(held->m_file, m_file))
            return held;
    }
    return nullptr;
}

} // namespace Toolkit::Base
