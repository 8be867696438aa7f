#include "toolkit/base/ExecutablePath.h"

#include "toolkit/base/Utf8.h"

#include <climits>
#include <cstddef>
#include <string>
#include <sys/types.h>
#include <unistd.h>

namespace Toolkit::Base {

std::wstring GetExecutablePath()
{
    // The system never reports a path longer than PATH_MAX.
    char path[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
    return length < 0 ? std::wstring()
                      : DecodeUtf8(std::string(path, static_cast<std::size_t>(length)));
}

} // namespace Toolkit::Base
