#pragma once

namespace Toolkit::Base {

/// Keeps an open file of this process from the processes that it forks.
///
/// Parent and child share an open file: a lock on it stays held until both have closed it, and what
/// the child writes lands in the parent's file. So at the fork the child's descriptor is turned
/// into one of /dev/null. It is not closed, because its number would go to the next file that the
/// child opens, and whoever still has the old number would use that one.
///
/// Any thread may use an object of its own. The descriptor must be open as long as it is watched: a
/// member that watches is declared after the one that closes.
class OwnDescriptor {
public:
    OwnDescriptor() = default;
    ~OwnDescriptor() { Forget(); }

    OwnDescriptor(const OwnDescriptor&) = delete;
    OwnDescriptor& operator=(const OwnDescriptor&) = delete;

    /// Keeps `descriptor`, instead of the previous one, from forked children. A negative one is no
    /// descriptor.
    void Watch(int descriptor);

    /// Lets forked children have the descriptor again, as before it is closed.
    void Forget();

private:
    friend struct OwnDescriptors;

    int m_descriptor = -1;
    OwnDescriptor* m_previous = nullptr; // of those that watch
    OwnDescriptor* m_next = nullptr;
};

} // namespace Toolkit::Base
