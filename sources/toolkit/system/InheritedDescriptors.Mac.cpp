#include "toolkit/system/InheritedDescriptors.Private.h"

#include <fcntl.h>
#include <unistd.h>

namespace Toolkit {

void CloseInheritedDescriptorsOnExec()
{
    const int count = ::getdtablesize();
    for (int descriptor = STDERR_FILENO + 1; descriptor < count; ++descriptor)
        ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

} // namespace Toolkit
