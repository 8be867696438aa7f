#pragma once

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OwnDescriptor.h"

#include <cstddef>
#include <string>
#include <sys/types.h>
#include <vector>

/// Stream sockets between processes of one machine. Their addresses are the paths of files.
///
/// Functions return what the system call of the same purpose returns, with the reason in `errno`.
/// None raises a signal.
namespace Toolkit::Ipc {

/// A socket that blocks. Programs that are started do not inherit it.
Base::FileDescriptor CreateSocket();

bool SetBlocking(const Base::FileDescriptor& socket, bool blocks);

/// On systems that check the mode of a socket, lets only the owner connect to the file to which the
/// socket will be bound.
bool RestrictToOwner(const Base::FileDescriptor& socket);

/// Connects to the socket file `path`, which has to be this user's own: neither a symbolic link nor
/// the file of another user.
bool ConnectToOwn(const Base::FileDescriptor& socket, const std::string& path);

/// Whether AcceptClient() would find a client.
bool HasWaitingClient(const Base::FileDescriptor& listener);

/// The connection of the next client, which does not block.
Base::FileDescriptor AcceptClient(const Base::FileDescriptor& listener);

/// Sends or receives what can be sent or received at once.
ssize_t Send(const Base::FileDescriptor& socket, const char* bytes, std::size_t length);
ssize_t Receive(const Base::FileDescriptor& socket, char* bytes, std::size_t length);

/// Whether the process at the other end runs under this process's user.
bool IsPeerOfThisUser(const Base::FileDescriptor& socket);

/// A listening socket and its file. The destructor removes the file, unless another one has taken
/// its place. A forked child's copy of the object removes nothing.
class SocketFile {
public:
    SocketFile() = default;
    ~SocketFile();

    SocketFile(const SocketFile&) = delete;
    SocketFile& operator=(const SocketFile&) = delete;

    /// Makes the file and listens. Called once. Replaces a socket file of this user to which nobody
    /// listens any more; false when anything else is in its place.
    bool Listen(const std::string& path);

    /// Whether the file is still the one that was made.
    bool IsInPlace() const;

    /// False in a forked child.
    bool IsOfThisProcess() const;

    const Base::FileDescriptor& Socket() const { return m_socket; }

private:
    bool ListenLocked(const std::string& path);
    bool MakeRoom(const std::string& path) const;

    Base::FileDescriptor m_directory;
    std::string m_name; // in m_directory, even if the working directory changes
    Base::FileDescriptor m_socket;
    Base::OwnDescriptor
        m_ownSocket; // no client waits for a forked child when this process has ended
    dev_t m_device = 0;
    ino_t m_inode = 0; // 0 while no file was made
    pid_t m_process = 0;
};

/// Sockets that may become readable, and a clock that ticks. The set has a descriptor of its own,
/// which is readable when one of them is or the clock has ticked, so that an event loop watches
/// only one.
class SocketSet {
public:
    /// Means the clock in a list of descriptors.
    static constexpr int c_tick = -1;

    SocketSet();

    /// False when the system has no descriptors for it.
    bool IsUsable() const;

    /// The set's own descriptor.
    int Get() const { return m_file.Get(); }

    /// Adds or removes a socket by its descriptor; false when the system cannot.
    bool Add(int socket);
    bool Remove(int socket);

    /// Lets the clock tick every `intervalMs` milliseconds; 0 stops it.
    void SetTicking(unsigned int intervalMs);

    /// The descriptors that are readable now, in the order in which they became readable, and only
    /// some of them when there are many; `c_tick` once when the clock has ticked since the last
    /// call, however often.
    std::vector<int> TakeReadable();

private:
    Base::FileDescriptor m_file;
    Base::FileDescriptor m_clock; // where the system has a descriptor for it
};

} // namespace Toolkit::Ipc
