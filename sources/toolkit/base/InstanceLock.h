#pragma once

#include "toolkit/base/FileLock.h"

#include <string>

namespace Toolkit::Base {

/// A lock on a file in the user's home directory, held as `FileLock` describes. The file is never
/// removed: otherwise two processes could lock different files with the same name.
///
/// Out of memory, the constructor and MakePath() throw `std::bad_alloc`.
class InstanceLock {
public:
    using State = FileLock::State;

    /// Tries to acquire the lock called `name`. It is unavailable if `name` is empty or cannot be
    /// encoded as UTF-8, or if the file cannot be opened.
    explicit InstanceLock(const std::wstring& name);

    /// Returns the path of the file for the lock called `name`.
    static std::string MakePath(const std::wstring& name);

    State GetState() const { return m_lock.GetState(); }

private:
    FileLock m_lock;
};

} // namespace Toolkit::Base
