#pragma once

#include "toolkit/base/FileLock.h"

#include <string>

namespace Toolkit::Base {

/// A lock on a file in the user's home directory, held as `FileLock` describes. The file stays:
/// removing it would let two processes lock different files of one name.
class InstanceLock {
public:
    using State = FileLock::State;

    /// Tries to take the lock called `name`; without a name there is none.
    explicit InstanceLock(const std::wstring& name);

    State GetState() const { return m_lock.GetState(); }

private:
    FileLock m_lock;
};

} // namespace Toolkit::Base
