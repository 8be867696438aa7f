#include "toolkit/base/OwnDescriptor.h"

#include "toolkit/base/Fork.h"

#include <cerrno>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace Toolkit::Base {

// The list of watching objects and what a forked child does with it.
struct OwnDescriptors {
    static OwnDescriptor* s_first BASE_GUARDED_BY(ForkLocks::s_ownDescriptors);

    static void Link(OwnDescriptor& own, int descriptor) BASE_REQUIRES(ForkLocks::s_ownDescriptors)
    {
        own.m_descriptor = descriptor;
        own.m_previous = nullptr;
        own.m_next = s_first;
        if (s_first)
            s_first->m_previous = &own;
        s_first = &own;
    }

    static void Unlink(OwnDescriptor& own) BASE_REQUIRES(ForkLocks::s_ownDescriptors)
    {
        if (own.m_previous)
            own.m_previous->m_next = own.m_next;
        else
            s_first = own.m_next;
        if (own.m_next)
            own.m_next->m_previous = own.m_previous;
        own.m_descriptor = -1;
    }

    // Calls only async-signal-safe functions, because the parent may have several threads. Clang's
    // check is off, because the child has one thread and needs no lock.
    static void OnForkInChild() BASE_NO_THREAD_SAFETY_ANALYSIS
    {
        const int error = errno;
        const int nullDevice = s_first ? ::open("/dev/null", O_RDWR | O_CLOEXEC) : -1;
        for (const OwnDescriptor* own = s_first; own; own = own->m_next)
            Replace(own->m_descriptor, nullDevice);
        if (nullDevice >= 0)
            ::close(nullDevice);
        errno = error;
    }

    // Without /dev/null, closing is the lesser evil: a lock must not outlive its process.
    static void Replace(int descriptor, int replacement)
    {
        if (replacement < 0)
            ::close(descriptor);
        else if (::dup2(replacement, descriptor) == descriptor)
            ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    }
};

OwnDescriptor* OwnDescriptors::s_first = nullptr;

void OwnDescriptor::Watch(int descriptor)
{
    // The system removes the handler when the library is unloaded.
    [[maybe_unused]] static const int error =
        ::pthread_atfork(nullptr, nullptr, OwnDescriptors::OnForkInChild);
    PrepareForks();

    Forget();
    if (descriptor < 0)
        return;
    const CheckedLock guard(ForkLocks::s_ownDescriptors);
    OwnDescriptors::Link(*this, descriptor);
}

void OwnDescriptor::Forget()
{
    if (m_descriptor < 0)
        return;
    const CheckedLock guard(ForkLocks::s_ownDescriptors);
    OwnDescriptors::Unlink(*this);
}

} // namespace Toolkit::Base
