#pragma once

namespace Toolkit::Base {

/// Keeps forked children from sharing an open file of this process.
///
/// Otherwise parent and child share it: a lock stays held until both have closed the file, and what
/// the child writes goes to the parent's file. Therefore the child's descriptor refers to /dev/null
/// from the fork on. Closing the descriptor would free its number for the next file that the child
/// opens, and code that still has the number would use that file. So the descriptor is closed only
/// if /dev/null cannot be opened.
///
/// One object is used by one thread at a time; different threads may use different objects. The
/// descriptor must be open while it is watched: declare the watching member after the one that
/// closes the descriptor.
class OwnDescriptor {
public:
    OwnDescriptor() = default;
    ~OwnDescriptor() { Forget(); }

    OwnDescriptor(const OwnDescriptor&) = delete;
    OwnDescriptor& operator=(const OwnDescriptor&) = delete;

    /// Watches `descriptor` instead of the previous one. A negative number watches nothing.
    void Watch(int descriptor);

    /// Stops watching. Call it before the descriptor is closed.
    void Forget();

private:
    friend struct OwnDescriptors;

    int m_descriptor = -1;
    // Neighbours in the list of watching objects.
    OwnDescriptor* m_previous = nullptr;
    OwnDescriptor* m_next = nullptr;
};

} // namespace Toolkit::Base
