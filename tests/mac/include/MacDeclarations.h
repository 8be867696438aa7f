#pragma once

// Included ahead of every source that script/check-mac compiles, and of the tests in tests/mac.
// Declares what the macOS system headers have and those of Linux lack. Forbids what only Linux has,
// except to those tests: they define TOOLKIT_MAC_STAND_INS, and their stand-ins call Linux
// functions.

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

// <sys/socket.h>, setsockopt(2): no SIGPIPE from writes to this socket.
#define SO_NOSIGPIPE 0x1022

// <sys/stat.h>, stat(2)
#define st_mtimespec st_mtim

extern "C" {
// <unistd.h>, getpeereid(3)
int getpeereid(int socket, uid_t* effectiveUser, gid_t* effectiveGroup);

// <pthread.h>, pthread_get_stackaddr_np(3), pthread_get_stacksize_np(3), pthread_main_np(3)
void* pthread_get_stackaddr_np(pthread_t thread);
size_t pthread_get_stacksize_np(pthread_t thread);
int pthread_main_np();
}

#ifndef TOOLKIT_MAC_STAND_INS
#undef MSG_NOSIGNAL
#undef SOCK_CLOEXEC
#undef SOCK_NONBLOCK
#undef O_PATH
#undef O_TMPFILE
#undef RENAME_NOREPLACE
#undef CLOCK_BOOTTIME
#undef POLLRDHUP
#pragma GCC poison accept4 pipe2 dup3 ppoll close_range execvpe fexecve gettid memrchr mempcpy
#pragma GCC poison epoll_create1 eventfd timerfd_create inotify_init1 memfd_create signalfd
#pragma GCC poison pthread_getattr_np program_invocation_name secure_getenv canonicalize_file_name
#pragma GCC poison fallocate renameat2 sendfile statx fwrite_unlocked wmempcpy
#pragma GCC poison st_atim st_ctim st_mtim
#endif
