// Implements, with Linux functions, the macOS functions that the library calls.

#include "mac/SystemStandIns.h"

#include <MacDeclarations.h>
#include <cstdint>
#include <cstring>
#include <mach-o/dyld.h>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::string s_executablePath;
std::optional<uid_t> s_peerUser;

struct Stack {
    void* begin = nullptr;
    size_t size = 0;
};

Stack GetStack(pthread_t thread)
{
    Stack stack;
    pthread_attr_t attributes;
    if (::pthread_getattr_np(thread, &attributes) != 0)
        return stack;
    ::pthread_attr_getstack(&attributes, &stack.begin, &stack.size);
    ::pthread_attr_destroy(&attributes);
    return stack;
}

} // namespace

namespace Toolkit::MacStandIns {

void SetExecutablePath(const std::string& path)
{
    s_executablePath = path;
}

void SetPeerUser(std::optional<uid_t> user)
{
    s_peerUser = user;
}

} // namespace Toolkit::MacStandIns

extern "C" {

int getpeereid(int socket, uid_t* effectiveUser, gid_t* effectiveGroup)
{
    struct {
        pid_t process;
        uid_t user;
        gid_t group;
    } peer{};
    socklen_t length = sizeof peer;
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0)
        return -1;
    *effectiveUser = s_peerUser.value_or(peer.user);
    *effectiveGroup = peer.group;
    return 0;
}

// Linux has no SO_NOSIGPIPE. Its value is stored as the socket's priority, which nothing else here
// uses; send() reads it from there.
int setsockopt(int socket, int level, int option, const void* value, socklen_t size) noexcept
{
    const int linuxOption = level == SOL_SOCKET && option == SO_NOSIGPIPE ? SO_PRIORITY : option;
    return static_cast<int>(::syscall(SYS_setsockopt, socket, level, linuxOption, value, size));
}

ssize_t send(int socket, const void* bytes, size_t length, int flags)
{
    int noSignal = 0;
    socklen_t size = sizeof noSignal;
    ::getsockopt(socket, SOL_SOCKET, SO_PRIORITY, &noSignal, &size);
    const int allFlags = noSignal != 0 ? flags | MSG_NOSIGNAL : flags;
    return ::syscall(SYS_sendto, socket, bytes, length, allFlags, nullptr, 0);
}

// Returns the high end of the stack, which grows down.
void* pthread_get_stackaddr_np(pthread_t thread)
{
    const Stack stack = GetStack(thread);
    return static_cast<char*>(stack.begin) + stack.size;
}

size_t pthread_get_stacksize_np(pthread_t thread)
{
    return GetStack(thread).size;
}

int pthread_main_np()
{
    return ::gettid() == ::getpid() ? 1 : 0;
}

// If the buffer is too small, returns -1 and stores the required size.
int _NSGetExecutablePath(char* buffer, uint32_t* size)
{
    const auto needed = static_cast<uint32_t>(s_executablePath.size() + 1);
    const bool fits = *size >= needed;
    *size = needed;
    if (!fits)
        return -1;
    std::memcpy(buffer, s_executablePath.c_str(), needed);
    return 0;
}
}
