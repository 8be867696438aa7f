#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <vector>

namespace Toolkit {

/// Sockets of which some may be readable, and a clock that ticks. The set has a descriptor itself,
/// readable when one of them is or the clock has ticked, so that an event loop need know no other.
class SocketSet {
public:
    /// What stands for the clock among the descriptors.
    static constexpr int c_tick = -1;

    SocketSet();

    /// False when the system has no descriptors for it.
    bool IsUsable() const;

    /// The set's own descriptor.
    int Get() const { return m_file.Get(); }

    /// Adds or removes a socket by its descriptor; false when the system has no room.
    bool Add(int socket);
    bool Remove(int socket);

    /// Lets the clock tick every `intervalMs` milliseconds; 0 stops it.
    void SetTicking(unsigned int intervalMs);

    /// The descriptors that are readable now, only some of them when there are many; `c_tick` when
    /// the clock has ticked since the last call.
    std::vector<int> TakeReadable();

private:
    Base::FileDescriptor m_file;
    Base::FileDescriptor m_clock; // where the system has a descriptor for it
};

} // namespace Toolkit
