#pragma once

#include "toolkit/files/FileDescriptor.Private.h"

#include <vector>

namespace Toolkit {

/// Sockets of which some may be readable. The set has a descriptor itself, readable when one of
/// them is, so that an event loop need know no other.
class SocketSet {
public:
    SocketSet();

    /// The set's own descriptor; negative when there is none to be had.
    int Get() const { return m_file.Get(); }

    /// Adds or removes a socket by its descriptor; false when the system has no room.
    bool Add(int socket);
    bool Remove(int socket);

    /// The descriptors that are readable now, only some of them when there are many.
    std::vector<int> TakeReadable() const;

private:
    FileDescriptor m_file;
};

} // namespace Toolkit
