#pragma once

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OwnDescriptor.h"

namespace Toolkit::Base {

/// An advisory lock on an open file. The system releases it when the process ends, however it ends.
/// A forked child does not keep it, so it is released when the parent ends, even if the child
/// lives on.
///
/// The lock belongs to the process: all FileLock objects for one file share it, until the last of
/// them is destroyed. Any thread may create and destroy them.
class FileLock {
public:
    enum class State { Held, HeldElsewhere, Unavailable };

    /// Tries to lock `file`. The lock is `HeldElsewhere` if another process holds it, and
    /// `Unavailable` if `file` is not open or cannot be locked.
    explicit FileLock(FileDescriptor file);
    ~FileLock();

    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Returns what the constructor found. In a forked child, that is still the parent's state.
    State GetState() const { return m_state; }

private:
    State TryLock();
    const FileLock* FindHolderOfSameFile() const;

    FileDescriptor m_file;
    OwnDescriptor m_ownFile;
    FileLock* m_next; // in the list of locks that this process holds
    State m_state;
};

} // namespace Toolkit::Base
