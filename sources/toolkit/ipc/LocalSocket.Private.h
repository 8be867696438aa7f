#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <cstddef>
#include <string>
#include <sys/types.h>

/// Stream sockets between processes of one machine. Their addresses are paths of files.
///
/// Results are those of the system's calls of the same names, reasons are in `errno`. No call
/// raises a signal.
namespace Toolkit::LocalSocket {

/// A socket that waits, and that programs which are started do not inherit.
Base::FileDescriptor Create();

/// Lets only its owner connect to the file that Bind() will make, where a socket's mode counts.
bool RestrictToOwner(const Base::FileDescriptor& socket);

/// Makes the file `path`.
bool Bind(const Base::FileDescriptor& socket, const std::string& path);

bool Connect(const Base::FileDescriptor& socket, const std::string& path);

/// The connection of the next client, which does not wait.
Base::FileDescriptor Accept(const Base::FileDescriptor& listener);

/// Sends or receives what can be sent or received at once.
ssize_t Send(const Base::FileDescriptor& socket, const char* bytes, std::size_t length);
ssize_t Receive(const Base::FileDescriptor& socket, char* bytes, std::size_t length);

bool SetWaiting(const Base::FileDescriptor& socket, bool waits);

/// Whether the process at the other end runs under this process's user.
bool IsPeerOfThisUser(const Base::FileDescriptor& socket);

} // namespace Toolkit::LocalSocket
