#include "OwnExecutable.h"

#include <cstdint>
#include <mach-o/dyld.h>

namespace Tool {

std::string FindOwnExecutable()
{
    std::uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size);
    std::string path(size, '\0');
    if (_NSGetExecutablePath(path.data(), &size) != 0)
        return {};
    return path.c_str();
}

} // namespace Tool
