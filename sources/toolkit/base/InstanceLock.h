#pragma once

#include "toolkit/base/FileLock.h"

#include <string>

namespace Toolkit::Base {

/// A lock on a file in the user's home directory, held as `FileLock` describes. The file is never
/// removed. Otherwise two processes could lock different files with the same name.
class InstanceLock {
public:
    using State = FileLock::State;

    /// Tries to acquire the lock called `name`. The lock is unavailable if `name` is empty.
    explicit InstanceLock(const std::wstring& name);

    /// Returns the path of the file for the lock called `name`.
    static std::string MakePath(const std::wstring& name);

    State GetState() const { return m_lock.GetState(); }

private:
    FileLock m_lock;
};

} // namespace Toolkit::Base
