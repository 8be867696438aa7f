#pragma once

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OwnDescriptor.h"

#include <cstddef>
#include <string>
#include <sys/types.h>
#include <vector>

/// Stream sockets between processes of one machine. Their addresses are file paths.
///
/// On failure, functions return false, -1 or a descriptor that is not open, with the reason in
/// `errno`. HasWaitingClient() and IsPeerOfThisUser() return false without a reason. No function
/// raises a signal.
namespace Toolkit::Ipc {

/// Creates a blocking socket, which is closed on exec.
Base::FileDescriptor CreateSocket();

bool SetBlocking(const Base::FileDescriptor& socket, bool blocks);

/// On systems that check the mode of a socket, lets only the owner connect to the file to which the
/// socket will be bound.
bool RestrictToOwner(const Base::FileDescriptor& socket);

/// Connects to the socket file `path`, which must be a socket of this user, not a symbolic link.
bool ConnectToOwn(const Base::FileDescriptor& socket, const std::string& path);

/// Whether a client is waiting for AcceptClient().
bool HasWaitingClient(const Base::FileDescriptor& listener);

/// Accepts the next client. The returned socket does not block.
Base::FileDescriptor AcceptClient(const Base::FileDescriptor& listener);

/// Sends or receives as many bytes as possible without waiting, and returns their number. Receive()
/// returns 0 when the other end has closed its socket.
ssize_t Send(const Base::FileDescriptor& socket, const char* bytes, std::size_t length);
ssize_t Receive(const Base::FileDescriptor& socket, char* bytes, std::size_t length);

/// Whether the process at the other end runs as the same user as this process.
bool IsPeerOfThisUser(const Base::FileDescriptor& socket);

/// A listening socket and its file. The destructor removes the file, unless another one has taken
/// its place. A forked child's copy of the object removes nothing.
class SocketFile {
public:
    SocketFile() = default;
    ~SocketFile();

    SocketFile(const SocketFile&) = delete;
    SocketFile& operator=(const SocketFile&) = delete;

    /// Creates the file and listens. Must be called only once. Replaces a socket file of this user
    /// on which no process listens any longer. False if anything else exists at `path`, which must
    /// contain a separator, and if the file cannot be created. Waits up to 2 seconds for another
    /// process that is doing the same, and then returns false.
    bool Listen(const std::string& path);

    /// Whether the file at the path is still the one that Listen() created.
    bool IsInPlace() const;

    /// False in a forked child.
    bool BelongsToThisProcess() const;

    const Base::FileDescriptor& Socket() const { return m_socket; }

private:
    bool ListenLocked(const std::string& path);
    bool RemoveStaleFile(const std::string& path) const;

    Base::FileDescriptor m_directory;
    std::string m_name; // relative to m_directory, because the working directory may change
    Base::FileDescriptor m_socket;
    Base::OwnDescriptor m_ownSocket; // a forked child does not keep the socket listening
    dev_t m_device = 0;
    ino_t m_inode = 0; // 0 until the file is created
    pid_t m_process = 0;
};

/// Sockets that may become readable, and a clock that ticks. The set has a descriptor of its own,
/// which is readable when a socket is or when the clock has ticked, so that an event loop watches
/// only one descriptor.
class SocketSet {
public:
    /// Represents the clock in a list of descriptors.
    static constexpr int c_tick = -1;

    SocketSet();

    /// False if the set could not be created, for example because no descriptors were left.
    bool IsUsable() const;

    /// The set's own descriptor.
    int Get() const { return m_file.Get(); }

    /// Adds or removes the socket with the descriptor `socket`; false on failure.
    bool Add(int socket);
    bool Remove(int socket);

    /// Makes the clock tick every `intervalMs` milliseconds; 0 stops it.
    void SetTicking(unsigned int intervalMs);

    /// Returns the descriptors that are readable now, at most 32, in the order in which they became
    /// readable. `c_tick` is among them once if the clock has ticked since the last call, however
    /// often. Throws `std::bad_alloc`.
    std::vector<int> PollReadable();

private:
    Base::FileDescriptor m_file;
    Base::FileDescriptor m_clock; // only on systems whose clock has a descriptor
};

} // namespace Toolkit::Ipc
