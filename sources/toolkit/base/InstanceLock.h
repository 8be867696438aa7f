#pragma once

#include "toolkit/base/FileLock.h"

#include <string>

namespace Toolkit::Base {

/// A lock on a file in the user's home directory, held as `FileLock` describes. The file is never
/// removed: two processes could then lock different files with one name.
class InstanceLock {
public:
    using State = FileLock::State;

    /// Tries to acquire the lock called `name`; an empty name locks nothing.
    explicit InstanceLock(const std::wstring& name);

    /// The path of the file of the lock called `name`.
    static std::string MakePath(const std::wstring& name);

    State GetState() const { return m_lock.GetState(); }

private:
    FileLock m_lock;
};

} // namespace Toolkit::Base
