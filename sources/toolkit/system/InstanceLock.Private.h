#pragma once

#include "toolkit/core/TString.h"
#include "toolkit/files/FileDescriptor.Private.h"

namespace Toolkit {

/// An advisory lock on a file in the user's home directory, which the system gives up when the
/// process ends in whatever way. The file stays: removing it would let two processes lock different
/// files of one name.
class InstanceLock {
public:
    enum class State { Held, HeldElsewhere, Unavailable };

    /// Tries to take the lock called `name`.
    explicit InstanceLock(const TString<wchar_t>& name);

    State GetState() const { return m_state; }

private:
    FileDescriptor m_file;
    State m_state;
};

} // namespace Toolkit
