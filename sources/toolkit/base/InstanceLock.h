#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <string>

namespace Toolkit::Base {

/// An advisory lock on a file in the user's home directory, which the system gives up when the
/// process ends in whatever way. The file stays: removing it would let two processes lock different
/// files of one name.
///
/// The lock is the process's: all of its objects of one name hold it, until the last of them goes.
class InstanceLock {
public:
    enum class State { Held, HeldElsewhere, Unavailable };

    /// Tries to take the lock called `name`; without a name there is none.
    explicit InstanceLock(const std::wstring& name);
    ~InstanceLock();

    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    State GetState() const { return m_state; }

private:
    State Take();
    bool ShareWithThisProcess();

    FileDescriptor m_file;
    InstanceLock* m_next; // of the locks that this process holds
    State m_state;
};

} // namespace Toolkit::Base
